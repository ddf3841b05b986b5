#include <TaApi/JsonSerializer.h>

#include <TaApi/NodeVisitor.h>
#include <TaApi/PropertiesValue.h>
#include <TaApi/Raise.h>
#include <TaApi/Structure.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>
#include <utility>

namespace Ta::Properties
{
namespace
{
using nlohmann::json;

constexpr std::size_t MAXIMUM_TEXT_SIZE = std::size_t{64} << 20U;
constexpr int MAXIMUM_DEPTH = 64;
constexpr std::size_t LONGEST_QUOTE = 120;

struct NotFinite
{
    const char* text;
    double value;
};

constexpr std::array NOT_FINITE{NotFinite{"NaN", std::numeric_limits<double>::quiet_NaN()},
                                NotFinite{"Infinity", std::numeric_limits<double>::infinity()},
                                NotFinite{"-Infinity", -std::numeric_limits<double>::infinity()}};

/// A text that can always be dumped.
json FromText(const std::string& text)
{
    const json plain(text);
    return json::parse(plain.dump(-1, ' ', false, json::error_handler_t::replace));
}

json FromNumber(double number)
{
    if (std::isfinite(number))
    {
        return number;
    }
    if (std::isnan(number))
    {
        return "NaN";
    }
    return number > 0 ? "Infinity" : "-Infinity";
}

json FromHeld(bool value)
{
    return value;
}

json FromHeld(std::int64_t value)
{
    return value;
}

json FromHeld(std::uint64_t value)
{
    return value;
}

json FromHeld(double value)
{
    return FromNumber(value);
}

json FromHeld(const std::string& value)
{
    return FromText(value);
}

template <typename T>
json FromHeld(const std::vector<T>& values)
{
    json list = json::array();
    for (const T& value : values)
    {
        list.push_back(FromHeld(value));
    }
    return list;
}

json FromDatum(const Datum& datum)
{
    return std::visit([](const auto& held) { return FromHeld(held); }, datum);
}

class ValueWriter : public INodeVisitorConst
{
public:
    static json Write(const Node& node)
    {
        ValueWriter writer;
        if (!node.IsWriteOnly())
        {
            node.Accept(writer);
        }
        return std::move(writer.result);
    }

    void Visit(const Structure& structure) override
    {
        result = json::object();
        for (std::size_t i = 0; i < structure.Count(); ++i)
        {
            const Node& child = structure.At(i);
            if (!child.IsWriteOnly())
            {
                result[child.Name()] = Write(child);
            }
        }
    }

    void Visit(const Leaf& leaf) override
    {
        result = FromDatum(leaf.Read());
    }

private:
    json result;
};

struct TypeName
{
    const char* type;
    const char* itemType;    ///< null if it is no list
    const char* expectation; ///< for messages
};

constexpr std::array TYPE_NAMES{TypeName{"boolean", nullptr, "true or false"},
                                TypeName{"integer", nullptr, "a whole number"},
                                TypeName{"integer", nullptr, "a whole number from 0 on"},
                                TypeName{"number", nullptr, "a number"},
                                TypeName{"string", nullptr, "a text"},
                                TypeName{"array", "integer", "a list of whole numbers"},
                                TypeName{"array", "number", "a list of numbers"},
                                TypeName{"array", "string", "a list of texts"}};

const TypeName& TypeNameOf(const Leaf& leaf)
{
    return TYPE_NAMES[static_cast<std::size_t>(leaf.Kind())];
}

/// Behind every order if it has none.
std::uint64_t SortOrderOf(const Node& child)
{
    const auto* order = dynamic_cast<const Value<std::uint32_t>*>(child.FindSchema("sortOrder"));
    return order == nullptr ? std::uint64_t{1} << 32U : order->Get();
}

std::vector<const Node*> InSortOrder(const Structure& structure)
{
    std::vector<std::pair<std::uint64_t, std::size_t>> places;
    for (std::size_t i = 0; i < structure.Count(); ++i)
    {
        places.emplace_back(SortOrderOf(structure.At(i)), i);
    }
    std::ranges::sort(places);
    std::vector<const Node*> children;
    for (const auto& [order, index] : places)
    {
        children.push_back(&structure.At(index));
    }
    return children;
}

class SchemaWriter : public INodeVisitorConst
{
public:
    static json Write(const Node& node)
    {
        SchemaWriter writer;
        node.Accept(writer);
        for (std::size_t i = 0; i < node.SchemaCount(); ++i)
        {
            const Node& entry = node.SchemaAt(i);
            writer.result[entry.Name()] = ValueWriter::Write(entry);
        }
        if (node.IsWriteOnly())
        {
            writer.result["writeOnly"] = true;
        }
        return std::move(writer.result);
    }

    void Visit(const Structure& structure) override
    {
        json properties = json::object();
        json order = json::array();
        for (const Node* child : InSortOrder(structure))
        {
            properties[child->Name()] = Write(*child);
            order.push_back(child->Name());
        }
        result = {{"type", "object"}, {"properties", std::move(properties)}, {"order", std::move(order)}};
    }

    void Visit(const Leaf& leaf) override
    {
        const TypeName& name = TypeNameOf(leaf);
        result = {{"type", name.type}};
        if (name.itemType != nullptr)
        {
            result["items"] = {{"type", name.itemType}};
        }
    }

private:
    json result;
};

std::string Shortened(std::string text)
{
    if (text.size() > LONGEST_QUOTE)
    {
        text.resize(LONGEST_QUOTE);
        text += "...";
    }
    return text;
}

/// What was given, for messages. Lists and objects are not quoted: they may be of any size and depth.
std::string Quote(const json& value)
{
    if (value.is_array())
    {
        return "a list of " + std::to_string(value.size()) + " entries";
    }
    if (value.is_object())
    {
        return "an object of " + std::to_string(value.size()) + " entries";
    }
    return Shortened(value.dump(-1, ' ', false, json::error_handler_t::replace));
}

template <typename T>
std::optional<T> ToHeld(const json& value);

template <>
std::optional<bool> ToHeld<bool>(const json& value)
{
    return value.is_boolean() ? std::optional<bool>(value.get<bool>()) : std::nullopt;
}

/// Whole numbers that come as floating point ("3.0") count; the bounds are exact powers of two.
template <typename T>
std::optional<T> ToWhole(const json& value)
{
    if (value.is_number_unsigned())
    {
        const auto whole = value.get<std::uint64_t>();
        return std::in_range<T>(whole) ? std::optional<T>(static_cast<T>(whole)) : std::nullopt;
    }
    if (value.is_number_integer())
    {
        const auto whole = value.get<std::int64_t>();
        return std::in_range<T>(whole) ? std::optional<T>(static_cast<T>(whole)) : std::nullopt;
    }
    if (!value.is_number_float())
    {
        return std::nullopt;
    }
    const auto number = value.get<double>();
    const double end = std::ldexp(1.0, std::numeric_limits<T>::digits);
    const double begin = std::numeric_limits<T>::is_signed ? -end : 0.0;
    const bool fits = number >= begin && number < end && std::trunc(number) == number;
    return fits ? std::optional<T>(static_cast<T>(number)) : std::nullopt;
}

template <>
std::optional<std::int64_t> ToHeld<std::int64_t>(const json& value)
{
    return ToWhole<std::int64_t>(value);
}

template <>
std::optional<std::uint64_t> ToHeld<std::uint64_t>(const json& value)
{
    return ToWhole<std::uint64_t>(value);
}

template <>
std::optional<double> ToHeld<double>(const json& value)
{
    if (value.is_number())
    {
        return value.get<double>();
    }
    if (value.is_string())
    {
        const auto& text = value.get_ref<const std::string&>();
        const auto* found = std::ranges::find(NOT_FINITE, text, &NotFinite::text);
        return found == NOT_FINITE.end() ? std::nullopt : std::optional<double>(found->value);
    }
    return std::nullopt;
}

template <>
std::optional<std::string> ToHeld<std::string>(const json& value)
{
    return value.is_string() ? std::optional<std::string>(value.get_ref<const std::string&>()) : std::nullopt;
}

template <typename T>
std::optional<std::vector<T>> ToList(const json& value)
{
    if (!value.is_array())
    {
        return std::nullopt;
    }
    std::vector<T> list;
    list.reserve(value.size());
    for (const json& element : value)
    {
        auto held = ToHeld<T>(element);
        if (!held)
        {
            return std::nullopt;
        }
        list.push_back(*std::move(held));
    }
    return list;
}

template <typename T>
std::optional<Datum> AsDatum(std::optional<T> held)
{
    return held ? std::optional<Datum>(*std::move(held)) : std::nullopt;
}

std::optional<Datum> ToDatum(const json& value, DatumKind kind)
{
    switch (kind)
    {
    case DatumKind::Boolean:
        return AsDatum(ToHeld<bool>(value));
    case DatumKind::Integer:
        return AsDatum(ToHeld<std::int64_t>(value));
    case DatumKind::Unsigned:
        return AsDatum(ToHeld<std::uint64_t>(value));
    case DatumKind::Number:
        return AsDatum(ToHeld<double>(value));
    case DatumKind::Text:
        return AsDatum(ToHeld<std::string>(value));
    case DatumKind::Integers:
        return AsDatum(ToList<std::int64_t>(value));
    case DatumKind::Numbers:
        return AsDatum(ToList<double>(value));
    case DatumKind::Texts:
        return AsDatum(ToList<std::string>(value));
    }
    return std::nullopt;
}

/// The limits of a leaf, for messages: "minimum 0, maximum 255".
std::string Limits(const Leaf& leaf)
{
    std::string limits;
    for (const char* key : {"minimum", "maximum", "exclusiveMinimum", "exclusiveMaximum", "enum"})
    {
        if (const Node* entry = leaf.FindSchema(key))
        {
            limits.append(limits.empty() ? "" : ", ").append(key).append(" ");
            limits.append(Shortened(ValueWriter::Write(*entry).dump()));
        }
    }
    return limits.empty() ? std::string("a value that its type can hold") : limits;
}

enum class UnknownKeys : std::uint8_t
{
    Raise,
    Report
};

/// Collects and checks first, and stores only when all of it is right. It goes down no further than the tree of nodes
/// does, so the depth of a document does not matter.
class ValueReader : public INodeVisitor
{
public:
    ValueReader(const Place& caller, UnknownKeys policy)
        : place(caller)
        , unknownKeys(policy)
    {
    }

    DeliveryReport Deliver(Node& root, const json& values)
    {
        value = &values;
        root.Accept(*this);
        for (const auto& [leaf, datum] : changes)
        {
            leaf->Write(datum);
        }
        return std::move(report);
    }

    void Visit(Structure& structure) override
    {
        if (!value->is_object())
        {
            FailType("an object");
        }
        const json& object = *value;
        const std::size_t length = path.size();
        for (const auto& [key, element] : object.items())
        {
            path.append(path.empty() ? "" : "/").append(key);
            value = &element;
            DeliverTo(structure, structure.Find(key));
            path.resize(length);
        }
    }

    void Visit(Leaf& leaf) override
    {
        auto datum = ToDatum(*value, leaf.Kind());
        if (!datum)
        {
            FailType(TypeNameOf(leaf).expectation);
        }
        ++report.delivered;
        if (Identical(*datum, leaf.Read()))
        {
            return;
        }
        CheckValue(leaf, *datum);
        changes.emplace_back(&leaf, *std::move(datum));
    }

private:
    void DeliverTo(const Structure& structure, Node* child)
    {
        if (child != nullptr)
        {
            child->Accept(*this);
            return;
        }
        if (unknownKeys == UnknownKeys::Raise)
        {
            FailUnknown(structure);
        }
        report.unknownKeys.push_back(path);
    }

    // What a parameter says of itself lacks the path and the remedy, which only the reader knows.
    void CheckValue(const Leaf& leaf, const Datum& datum) const
    {
        try
        {
            leaf.Check(datum);
        }
        catch (const Exception& failure)
        {
            MU_FAIL_AT(place, failure.Status(), "%s: %s It was given %s; allowed: %s.", PathText().c_str(),
                       failure.Message(), Quote(*value).c_str(), Limits(leaf).c_str());
        }
    }

    [[noreturn]] void FailType(const char* expectation) const
    {
        MU_FAIL_AT(place, zERROR_PARAMETER, "%s: takes %s, but was given %s. Give it %s.", PathText().c_str(),
                   expectation, Quote(*value).c_str(), expectation);
    }

    [[noreturn]] void FailUnknown(const Structure& structure) const
    {
        std::string known;
        for (const Node* child : InSortOrder(structure))
        {
            known.append(known.empty() ? "" : ", ").append(child->Name());
        }
        MU_FAIL_AT(place, zERROR_MISSING, "%s: no such key here. Take it out, or use one of: %s.", PathText().c_str(),
                   Shortened(std::move(known)).c_str());
    }

    [[nodiscard]] std::string PathText() const
    {
        return path.empty() ? std::string("(root)") : Shortened(path);
    }

    Place place;
    UnknownKeys unknownKeys;
    const json* value = nullptr;
    std::string path;
    std::vector<std::pair<Leaf*, Datum>> changes;
    DeliveryReport report;
};
} // namespace

nlohmann::json JsonSerializer::Serialize(const Node& node)
{
    return ValueWriter::Write(node);
}

nlohmann::json JsonSerializer::SerializeSchema(const Node& node)
{
    return SchemaWriter::Write(node);
}

void JsonSerializer::Deserialize(Node& node, const nlohmann::json& values)
{
    ValueReader(MU_HERE, UnknownKeys::Raise).Deliver(node, values);
}

DeliveryReport JsonSerializer::DeserializeKnown(Node& node, const nlohmann::json& values)
{
    return ValueReader(MU_HERE, UnknownKeys::Report).Deliver(node, values);
}

nlohmann::json JsonSerializer::Parse(std::string_view text)
{
    if (text.size() > MAXIMUM_TEXT_SIZE)
    {
        MU_FAIL(zERROR_PARAMETER, "The document has %zu bytes; give one of at most %zu.", text.size(),
                MAXIMUM_TEXT_SIZE);
    }
    const Place place = MU_HERE;
    const auto checkDepth = [&place](int depth, json::parse_event_t /*event*/, json& /*parsed*/) {
        if (depth > MAXIMUM_DEPTH)
        {
            MU_FAIL_AT(place, zERROR_PARAMETER, "The document is nested more than %d deep; flatten it.", MAXIMUM_DEPTH);
        }
        return true;
    };
    try
    {
        return json::parse(text.begin(), text.end(), checkDepth);
    }
    catch (const json::exception& failure)
    {
        MU_FAIL(zERROR_PARAMETER, "The document is no JSON; correct it: %s", Shortened(failure.what()).c_str());
    }
}
} // namespace Ta::Properties
