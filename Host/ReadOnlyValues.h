#pragma once

#include <Host/Job.h>

#include <TaApi/PropertiesValue.h>
#include <TaApi/Structure.h>

#include <nlohmann/json.hpp>

#include <memory>
#include <string>
#include <vector>

namespace Mu::Host
{
/// Whether a parameter is there for people to read, not to set.
[[nodiscard]] bool IsReadOnly(const Ta::Properties::Node& node);

/// Values of read-only parameters in a saved job. A tool wrote them, and restoring them is no attempt to set them: they
/// go to their parameters without the log line that such an attempt gets.
class ReadOnlyValues
{
public:
    /// Takes the values of all read-only parameters of the tree out of `values` and checks them.
    /// @param place  of `values` in the job
    /// @throws Error  for a value of another type, or a transform that is not 16 finite numbers or none
    ReadOnlyValues(Ta::Properties::Node& root, nlohmann::json& values, const JobPlace& place);

    /// Stores them, without validation and without log lines.
    void Store() const;

private:
    struct Entry
    {
        Ta::Properties::Leaf* target;
        std::unique_ptr<Ta::Properties::Leaf> value;
    };

    void TakeFrom(const Ta::Properties::Structure& group, nlohmann::json& values, const std::string& prefix,
                  const JobPlace& place);

    std::vector<Entry> entries;
};
} // namespace Mu::Host
