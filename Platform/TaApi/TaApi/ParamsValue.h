#pragma once

#include <TaApi/ParamsBase.h>
#include <TaApi/PropertiesValue.h>

#include <concepts>
#include <cstddef>
#include <string>
#include <type_traits>
#include <vector>

namespace Ta::Params
{
/// Types that can be limited.
template <typename T>
concept Limitable = std::is_arithmetic_v<T> && !std::same_as<T, bool>;

/// A parameter with a value. `Get` is a plain member read. `Set` validates first: "readOnly", "minimum", "maximum",
/// "exclusiveMinimum", "exclusiveMaximum", in this order. A NaN lies within no limit.
/// The setters and getters of schema entries raise -997 if the entry was not enabled.
template <typename T>
class MU_PLATFORM_EXPORT Value : public Properties::Value<T>, public ParamsBase
{
public:
    Value()
        : ParamsBase(static_cast<Properties::Node&>(*this))
    {
    }

    explicit Value(T first)
        : Properties::Value<T>(std::move(first))
        , ParamsBase(static_cast<Properties::Node&>(*this))
    {
    }

    [[nodiscard]] operator const T&() const noexcept
    {
        return this->Get();
    }

    /// Logs a set of a read-only value, which is then taken all the same; logs and raises -997 outside a limit.
    void CheckValidation(const T& newValue) const override
    {
        if (GetReadOnly())
        {
            LogReadOnly(MU_HERE);
        }
        if constexpr (Limitable<T>)
        {
            CheckLimits(MU_HERE, newValue);
        }
    }

    [[nodiscard]] const T& GetMinimum() const requires Limitable<T>
    {
        return GetEntry<T>(MU_HERE, "minimum");
    }

    void SetMinimum(const T& minimum) requires Limitable<T>
    {
        SetEntry<T>(MU_HERE, "minimum", minimum);
    }

    void EnableMinimum(const T& first = T{}) requires Limitable<T>
    {
        EnableEntry<T>("minimum", first);
    }

    [[nodiscard]] const T& GetMaximum() const requires Limitable<T>
    {
        return GetEntry<T>(MU_HERE, "maximum");
    }

    void SetMaximum(const T& maximum) requires Limitable<T>
    {
        SetEntry<T>(MU_HERE, "maximum", maximum);
    }

    void EnableMaximum(const T& first = T{}) requires Limitable<T>
    {
        EnableEntry<T>("maximum", first);
    }

    [[nodiscard]] const T& GetExclusiveMinimum() const requires Limitable<T>
    {
        return GetEntry<T>(MU_HERE, "exclusiveMinimum");
    }

    void SetExclusiveMinimum(const T& minimum) requires Limitable<T>
    {
        SetEntry<T>(MU_HERE, "exclusiveMinimum", minimum);
    }

    void EnableExclusiveMinimum(const T& first = T{}) requires Limitable<T>
    {
        EnableEntry<T>("exclusiveMinimum", first);
    }

    [[nodiscard]] const T& GetExclusiveMaximum() const requires Limitable<T>
    {
        return GetEntry<T>(MU_HERE, "exclusiveMaximum");
    }

    void SetExclusiveMaximum(const T& maximum) requires Limitable<T>
    {
        SetEntry<T>(MU_HERE, "exclusiveMaximum", maximum);
    }

    void EnableExclusiveMaximum(const T& first = T{}) requires Limitable<T>
    {
        EnableEntry<T>("exclusiveMaximum", first);
    }

    [[nodiscard]] const std::string& GetUnits() const
    {
        return GetEntry<std::string>(MU_HERE, "units");
    }

    void SetUnits(const std::string& units)
    {
        SetEntry<std::string>(MU_HERE, "units", units);
    }

    void EnableUnits(const std::string& first = {})
    {
        EnableEntry<std::string>("units", first);
    }

    /// The factor from the value to what is shown.
    [[nodiscard]] double GetScale() const
    {
        return GetEntry<double>(MU_HERE, "scale");
    }

    void SetScale(double scale)
    {
        SetEntry<double>(MU_HERE, "scale", scale);
    }

    void EnableScale(double first = 1.0)
    {
        EnableEntry<double>("scale", first);
    }

    [[nodiscard]] const std::string& GetFormat() const
    {
        return GetEntry<std::string>(MU_HERE, "format");
    }

    void SetFormat(const std::string& format)
    {
        SetEntry<std::string>(MU_HERE, "format", format);
    }

    void EnableFormat(const std::string& first = {})
    {
        EnableEntry<std::string>("format", first);
    }

    /// The value that is really in force, where it can differ from the one that was set.
    [[nodiscard]] const T& GetActual() const
    {
        return GetEntry<T>(MU_HERE, "actual");
    }

    void SetActual(const T& actual)
    {
        SetEntry<T>(MU_HERE, "actual", actual);
    }

    void EnableActual(const T& first = T{})
    {
        EnableEntry<T>("actual", first);
    }

    /// @throws Ta::Exception -997 if "used" is on
    void EnableVisibility()
    {
        EnableVisibilityAt(MU_HERE);
    }

private:
    // The comparisons are negated so that a NaN fails each of them.
    void CheckLimits(const Place& place, const T& newValue) const
    {
        if (const auto* limit = Entry<T>("minimum"); limit != nullptr && !(newValue >= limit->Get()))
        {
            FailValidation(place, "was set to be less than its minimum.");
        }
        if (const auto* limit = Entry<T>("maximum"); limit != nullptr && !(newValue <= limit->Get()))
        {
            FailValidation(place, "was set to be greater than its maximum.");
        }
        if (const auto* limit = Entry<T>("exclusiveMinimum"); limit != nullptr && !(newValue > limit->Get()))
        {
            FailValidation(place, "was set to be less than or equal to its exclusive minimum.");
        }
        if (const auto* limit = Entry<T>("exclusiveMaximum"); limit != nullptr && !(newValue < limit->Get()))
        {
            FailValidation(place, "was set to be greater than or equal to its exclusive maximum.");
        }
    }
};

extern template class Value<bool>;
extern template class Value<int>;
extern template class Value<std::size_t>;
extern template class Value<double>;
extern template class Value<std::string>;
extern template class Value<std::vector<double>>;
} // namespace Ta::Params
