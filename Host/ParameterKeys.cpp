#include <Host/ParameterKeys.h>

#include <Host/Error.h>
#include <Host/Names.h>
#include <Host/ReadOnlyValues.h>

#include <TaApi/PropertiesValue.h>

#include <fmt/format.h>

#include <algorithm>

namespace Mu::Host
{
namespace
{
using Ta::Properties::Leaf;
using Ta::Properties::Node;
using Ta::Properties::Structure;

void CollectPaths(const Node& node, const std::string& prefix, std::vector<std::string>& paths)
{
    const auto* const structure = dynamic_cast<const Structure*>(&node);
    if (structure == nullptr)
    {
        return;
    }
    for (std::size_t i = 0; i < structure->Count(); ++i)
    {
        const Node& child = structure->At(i);
        paths.push_back(prefix + child.Name());
        CollectPaths(child, paths.back() + "/", paths);
    }
}

bool HasLeaf(const Structure& group, const char* key)
{
    return dynamic_cast<const Leaf*>(group.Find(key)) != nullptr;
}
/// "Region/x" as {"Region": {"x": ...}}.
std::string AsObjects(const std::string& path)
{
    const std::size_t slash = path.find('/');
    const std::string inner = slash == std::string::npos ? "..." : AsObjects(path.substr(slash + 1));
    return fmt::format("{{{}: {}}}", Quoted(path.substr(0, slash)), inner);
}
} // namespace

std::vector<std::string> ParameterPaths(const Node& root)
{
    std::vector<std::string> paths;
    CollectPaths(root, "", paths);
    std::ranges::sort(paths);
    return paths;
}

std::string KnownKeys(const Node& root, const std::string& path)
{
    // The path leads somewhere, so the slash stands in a key: fine on a command line, but not in a job.
    if (const auto paths = ParameterPaths(root); std::ranges::binary_search(paths, path))
    {
        return "Write groups as objects: " + AsObjects(path);
    }
    const auto* group = dynamic_cast<const Structure*>(&root);
    std::string key = path;
    while (group != nullptr)
    {
        const std::size_t slash = key.find('/');
        const auto* const inner =
            slash == std::string::npos ? nullptr : dynamic_cast<const Structure*>(group->Find(key.substr(0, slash)));
        if (inner == nullptr)
        {
            break;
        }
        group = inner;
        key.erase(0, slash + 1);
    }
    std::vector<std::string> known;
    for (std::size_t i = 0; group != nullptr && i < group->Count(); ++i)
    {
        known.push_back(group->At(i).Name());
    }
    return KnownNames(key, known);
}

bool IsRegion(const Structure& group)
{
    return HasLeaf(group, "x") && HasLeaf(group, "width");
}

bool GivesRegionValues(const Node& root, const nlohmann::json& values)
{
    const auto* const group = dynamic_cast<const Structure*>(&root);
    if (group == nullptr || !values.is_object() || values.empty())
    {
        return false;
    }
    const bool isRegion = IsRegion(*group);
    return std::ranges::any_of(values.items(), [group, isRegion](const auto& item) {
        const Node* const child = group->Find(item.key());
        if (child == nullptr)
        {
            return false;
        }
        const bool isSet = isRegion && dynamic_cast<const Leaf*>(child) != nullptr && !IsReadOnly(*child);
        return isSet || GivesRegionValues(*child, item.value());
    });
}
} // namespace Mu::Host
