#pragma once

#include <TaApi/Node.h>

#include <nlohmann/json.hpp>

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace Ta::Properties
{
/// What became of values that were delivered to a tree.
struct DeliveryReport
{
    std::vector<std::string> unknownKeys; ///< paths ("Region 3/x") that the tree does not have, in order of their keys
    std::size_t delivered = 0;            ///< leaves that now hold the value that was delivered
};

/// Values and schema of a tree to JSON, and values back.
///
/// Numbers come back bit by bit. JSON has no number for what is not finite: it is written as the texts "NaN",
/// "Infinity" and "-Infinity", which are read back for numbers only. The null value 64F is a finite number like others.
/// Text that is no valid UTF-8 is written with U+FFFD in place of the bad bytes: a document can always be dumped.
class MU_PLATFORM_EXPORT JsonSerializer
{
public:
    /// The values: an object for a structure, a plain value for a leaf. Write-only nodes are left out; a write-only
    /// root gives null.
    [[nodiscard]] static nlohmann::json Serialize(const Node& node);

    /// The schema, enough to draw a form from. Each node has "type", its schema entries under their keys, and
    /// "writeOnly" if it is so. A structure has "properties", an object of its children's schemas by key, and "order",
    /// the keys by rising "sortOrder"; children of equal order, and those without one behind them, as registered.
    [[nodiscard]] static nlohmann::json SerializeSchema(const Node& node);

    /// Delivers values to the nodes of their keys. Keys that are not mentioned keep their value, and a leaf that holds
    /// the very value delivered is left alone. Everything is checked before anything is stored.
    /// @throws Ta::Exception -999 for an unknown key, -997 for a wrong type or a value that the node does not take; the
    /// text names the path and the remedy
    static void Deserialize(Node& node, const nlohmann::json& values);

    /// The same, but keys that the tree does not have are reported and the others delivered. For trees whose nodes come
    /// and go with their values: deliver, let the tool update its parameters, deliver again.
    [[nodiscard]] static DeliveryReport DeserializeKnown(Node& node, const nlohmann::json& values);

    /// Reads a document of at most 64 MB, nested at most 64 deep.
    /// @throws Ta::Exception -997 with the place and reason if the text is no such document
    [[nodiscard]] static nlohmann::json Parse(std::string_view text);
};
} // namespace Ta::Properties
