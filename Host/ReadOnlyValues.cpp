#include <Host/ReadOnlyValues.h>

#include <Host/Error.h>

#include <TaApi/Exception.h>
#include <TaApi/JsonSerializer.h>

#include <fmt/format.h>

#include <cmath>

namespace Mu::Host
{
namespace
{
using nlohmann::json;
using Ta::Properties::Leaf;
using Ta::Properties::Node;
using Ta::Properties::Structure;

constexpr std::size_t transformSize = 16;
constexpr const char* transformRemedy = "Write the 16 numbers of a 4 by 4 matrix, row after row, or take the key out";

template <typename T>
const T* SchemaValue(const Node& node, const char* key)
{
    const auto* const entry = dynamic_cast<const Ta::Properties::Value<T>*>(node.FindSchema(key));
    return entry == nullptr ? nullptr : &entry->Get();
}

bool IsTransform(const Node& node)
{
    const auto* const type = SchemaValue<std::string>(node, "extendedType");
    return type != nullptr && *type == "Transform3d";
}

void CheckTransform(const json& value, const JobPlace& place)
{
    if (!value.is_array())
    {
        place.Fail(fmt::format("this is {}, not a list of numbers", value.type_name()), transformRemedy);
    }
    if (!value.empty() && value.size() != transformSize)
    {
        place.Fail(fmt::format("the list has {} entries", value.size()), transformRemedy);
    }
    for (std::size_t i = 0; i < value.size(); ++i)
    {
        if (!value[i].is_number() || !std::isfinite(value[i].get<double>()))
        {
            place.At(i).Fail("this is no number", transformRemedy);
        }
    }
}

std::unique_ptr<Leaf> Converted(const Leaf& leaf, const json& value, const std::string& path, const JobPlace& place)
{
    std::unique_ptr<Leaf> converted = leaf.Clone();
    Structure holder;
    holder.Register(path, *converted);
    try
    {
        Ta::Properties::JsonSerializer::Deserialize(holder, {{path, value}});
    }
    catch (const Ta::Exception& failure)
    {
        throw Error(fmt::format("{}: {}.{}", place.file.string(), place.where, failure.Message()));
    }
    return converted;
}
} // namespace

bool IsReadOnly(const Node& node)
{
    const auto* const readOnly = SchemaValue<bool>(node, "readOnly");
    return readOnly != nullptr && *readOnly;
}

ReadOnlyValues::ReadOnlyValues(Node& root, json& values, const JobPlace& place)
{
    const auto* const group = dynamic_cast<const Structure*>(&root);
    if (group != nullptr && values.is_object())
    {
        TakeFrom(*group, values, "", place);
    }
}

void ReadOnlyValues::TakeFrom(const Structure& group, json& values, const std::string& prefix, const JobPlace& place)
{
    for (auto item = values.begin(); item != values.end();)
    {
        const std::string path = prefix + item.key();
        Node* const child = group.Find(item.key());
        auto* const leaf = dynamic_cast<Leaf*>(child);
        if (leaf != nullptr && IsReadOnly(*leaf))
        {
            if (IsTransform(*leaf))
            {
                CheckTransform(*item, place.At(path));
            }
            entries.push_back({leaf, Converted(*leaf, *item, path, place)});
            item = values.erase(item);
            continue;
        }
        const auto* const inner = dynamic_cast<const Structure*>(child);
        if (inner != nullptr && item->is_object())
        {
            TakeFrom(*inner, *item, path + "/", place);
        }
        ++item;
    }
}

void ReadOnlyValues::Store() const
{
    for (const Entry& entry : entries)
    {
        entry.target->Write(entry.value->Read());
    }
}
} // namespace Mu::Host
