#pragma once

#include <TaApi/Structure.h>

#include <nlohmann/json.hpp>

#include <string>
#include <vector>

namespace Mu::Host
{
/// The paths of all nodes of a tree of parameters, structures included, sorted: "Region", "Region/width".
[[nodiscard]] std::vector<std::string> ParameterPaths(const Ta::Properties::Node& root);

/// The remedy for a path that the tree does not have: the keys that stand where it leaves the tree.
[[nodiscard]] std::string KnownKeys(const Ta::Properties::Node& root, const std::string& path);

/// Whether a group of parameters is a region: every region has a place and an extent along x.
[[nodiscard]] bool IsRegion(const Ta::Properties::Structure& group);

/// Whether `values` give any value of a region that stands in the tree. Values that are there to be read only, as a
/// region's transform, do not count.
[[nodiscard]] bool GivesRegionValues(const Ta::Properties::Node& root, const nlohmann::json& values);
} // namespace Mu::Host
