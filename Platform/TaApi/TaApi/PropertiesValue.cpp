#include <TaApi/PropertiesValue.h>

#include <array>

namespace Ta::Properties
{
namespace
{
constexpr std::array KIND_NAMES{"a boolean", "an integer",         "an unsigned integer", "a number",
                                "a text",    "a list of integers", "a list of numbers",   "a list of texts"};

const char* NameOf(DatumKind kind)
{
    return KIND_NAMES[static_cast<std::size_t>(kind)];
}
} // namespace

Leaf::~Leaf() = default;

void Leaf::Accept(INodeVisitorConst& visitor) const
{
    visitor.Visit(*this);
}

void Leaf::Accept(INodeVisitor& visitor)
{
    visitor.Visit(*this);
}

void Leaf::FailConversion(const Place& place, const Datum& datum) const
{
    if (KindOf(datum) != Kind())
    {
        MU_FAIL_AT(place, zERROR_PARAMETER, "%s takes %s, not %s.", DisplayName(), NameOf(Kind()),
                   NameOf(KindOf(datum)));
    }
    MU_FAIL_AT(place, zERROR_PARAMETER, "%s was set to a value outside the range of its type.", DisplayName());
}

void Leaf::FailCopy(const Place& place, const Node& other) const
{
    MU_FAIL_AT(place, zERROR_PARAMETER, "The value of %s cannot be copied to %s: it is of another type.",
               other.DisplayName(), DisplayName());
}

template class Value<bool>;
template class Value<int>;
template class Value<std::uint32_t>;
template class Value<std::size_t>;
template class Value<double>;
template class Value<std::string>;
template class Value<std::vector<std::int64_t>>;
template class Value<std::vector<double>>;
template class Value<std::vector<std::string>>;
} // namespace Ta::Properties
