#include <TaApi/Datum.h>

#include <algorithm>
#include <bit>
#include <type_traits>

namespace Ta::Properties
{
namespace
{
bool IdenticalNumbers(double a, double b)
{
    return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b);
}

bool IdenticalHeld(const auto& a, const auto& b)
{
    using Held = std::remove_cvref_t<decltype(a)>;
    if constexpr (std::is_same_v<Held, double>)
    {
        return IdenticalNumbers(a, b);
    }
    else if constexpr (std::is_same_v<Held, std::vector<double>>)
    {
        return std::ranges::equal(a, b, IdenticalNumbers);
    }
    else
    {
        return a == b;
    }
}
} // namespace

bool Identical(const Datum& a, const Datum& b)
{
    if (a.index() != b.index())
    {
        return false;
    }
    const auto compare = [&b](const auto& held) {
        return IdenticalHeld(held, std::get<std::remove_cvref_t<decltype(held)>>(b));
    };
    return std::visit(compare, a);
}
} // namespace Ta::Properties
