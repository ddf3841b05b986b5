#pragma once

#include <TaApi/ParamsValue.h>

#include <algorithm>
#include <concepts>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace Ta::Params
{
/// A parameter whose value is one of a list of options, each a value and a text. T is an integer, an enumeration or
/// std::string. Clearing the options keeps the value, and the owner may `SetUnchecked` one that is no option yet.
template <typename T>
class MU_PLATFORM_EXPORT Enum : public Value<T>
{
    static_assert(std::same_as<T, std::string> || std::integral<T> || std::is_enum_v<T>);

public:
    Enum()
    {
        RegisterOptions();
    }

    explicit Enum(T first)
        : Value<T>(std::move(first))
    {
        RegisterOptions();
    }

    void ClearOptions()
    {
        optionValues.SetUnchecked({});
        optionTexts.SetUnchecked({});
    }

    /// Options stand in the order in which they were added.
    void AddOption(const T& option, const std::string& text)
    {
        auto newValues = optionValues.Get();
        auto newTexts = optionTexts.Get();
        newValues.push_back(Stored(option));
        newTexts.push_back(text);
        optionValues.SetUnchecked(newValues);
        optionTexts.SetUnchecked(newTexts);
    }

    [[nodiscard]] std::size_t OptionCount() const noexcept
    {
        return optionValues.Get().size();
    }

    /// @throws Ta::Exception -997 if `index` is not below `OptionCount()`
    [[nodiscard]] T OptionValueAt(std::size_t index) const
    {
        CheckIndex(MU_HERE, index);
        return static_cast<T>(optionValues.Get()[index]);
    }

    /// @throws Ta::Exception -997 if `index` is not below `OptionCount()`
    [[nodiscard]] const std::string& OptionTextAt(std::size_t index) const
    {
        CheckIndex(MU_HERE, index);
        return optionTexts.Get()[index];
    }

    [[nodiscard]] bool IsOption(const T& candidate) const
    {
        return std::ranges::find(optionValues.Get(), Stored(candidate)) != optionValues.Get().end();
    }

    /// As that of `Value`, then: logs and raises -997 if the value is no option.
    void CheckValidation(const T& newValue) const override
    {
        Value<T>::CheckValidation(newValue);
        if (!IsOption(newValue))
        {
            this->FailValidation(MU_HERE, "was set to a value outside of the enum.");
        }
    }

private:
    using StoredType = std::conditional_t<std::same_as<T, std::string>, std::string, std::int64_t>;

    [[nodiscard]] static StoredType Stored(const T& option)
    {
        return static_cast<StoredType>(option);
    }

    void RegisterOptions()
    {
        this->RegisterSchema("enum", optionValues);
        this->RegisterSchema("enumText", optionTexts);
    }

    void CheckIndex(const Place& place, std::size_t index) const
    {
        if (index >= OptionCount())
        {
            MU_FAIL_AT(place, zERROR_PARAMETER, "%s has no option %zu: it has %zu.", this->DisplayName(), index,
                       OptionCount());
        }
    }

    Properties::Value<std::vector<StoredType>> optionValues;
    Properties::Value<std::vector<std::string>> optionTexts;
};
} // namespace Ta::Params
