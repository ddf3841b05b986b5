#pragma once

#include <TaApi/PropertiesValue.h>
#include <TaApi/Raise.h>

#include <cstdint>
#include <string>
#include <vector>

namespace Ta::Params
{
/// What every parameter has over its node: typed access to the entries of its schema. An entry is there once it was
/// enabled; enabling it again sets its value.
class MU_PLATFORM_EXPORT ParamsBase
{
public:
    ParamsBase(const ParamsBase&) = delete;
    ParamsBase& operator=(const ParamsBase&) = delete;

    /// "used": whether the parameter is in use now. True as long as it was not enabled.
    [[nodiscard]] bool GetUsed() const;

    /// Switches "used" on first if need be.
    /// @throws Ta::Exception -997 if that is not allowed
    void SetUsed(bool used);

    /// An entry that is there already keeps its value; a new one is true.
    /// @throws Ta::Exception -997 if "visibility" is on
    void EnableUsed();
    [[nodiscard]] bool IsUsedEnabled() const;

    /// "readOnly": a set by anyone but the owner is logged. False as long as it was not enabled.
    [[nodiscard]] bool GetReadOnly() const;
    void EnableReadOnly(bool readOnly = true);
    /// @throws Ta::Exception -997 if "readOnly" was not enabled
    void SetReadOnly(bool readOnly);

    /// "visibility": the names of the views in which the parameter is shown.
    [[nodiscard]] bool IsVisibilityEnabled() const;
    /// @throws Ta::Exception -997 if "visibility" was not enabled
    [[nodiscard]] const std::vector<std::string>& GetVisibility() const;
    /// @throws Ta::Exception -997 if "visibility" was not enabled
    void SetVisibility(const std::vector<std::string>& types);
    /// @throws Ta::Exception -997 if "visibility" was not enabled
    void ClearVisibility();

    /// The text for the user; empty as long as there is none.
    [[nodiscard]] std::string GetTitle() const;
    void SetTitle(const std::string& title);

    [[nodiscard]] const std::string& GetDescription() const;
    void SetDescription(const std::string& description);
    void EnableDescription(const std::string& first = {});

    [[nodiscard]] const std::string& GetExtendedType() const;
    void SetExtendedType(const std::string& extendedType);
    void EnableExtendedType(const std::string& first = {});

protected:
    explicit ParamsBase(Properties::Node& owner) noexcept
        : ownNode(&owner)
    {
    }

    ~ParamsBase() = default;

    void EnableVisibilityAt(const Place& place);

    /// The entry of that key, or null if it was not enabled.
    template <typename X>
    [[nodiscard]] Properties::Value<X>* Entry(const char* key) const
    {
        return dynamic_cast<Properties::Value<X>*>(ownNode->FindSchema(key));
    }

    template <typename X>
    void EnableEntry(const char* key, const X& first)
    {
        if (auto* entry = Entry<X>(key))
        {
            entry->SetUnchecked(first);
            return;
        }
        ownNode->AdoptSchema(key, std::make_unique<Properties::Value<X>>(first));
    }

    template <typename X>
    [[nodiscard]] const X& GetEntry(const Place& place, const char* key) const
    {
        const auto* entry = Entry<X>(key);
        if (entry == nullptr)
        {
            FailUsing(place, key);
        }
        return entry->Get();
    }

    template <typename X>
    void SetEntry(const Place& place, const char* key, const X& newValue)
    {
        auto* entry = Entry<X>(key);
        if (entry == nullptr)
        {
            FailSetting(place, key);
        }
        entry->SetUnchecked(newValue);
    }

    void LogReadOnly(const Place& place) const;

    /// Logs and raises "<name> <violation>".
    [[noreturn]] void FailValidation(const Place& place, const char* violation) const;

private:
    [[noreturn]] void FailUsing(const Place& place, const char* key) const;
    [[noreturn]] void FailSetting(const Place& place, const char* key) const;

    Properties::Node* ownNode;
};

/// What structures of parameters have.
class MU_PLATFORM_EXPORT StructBase : public ParamsBase
{
public:
    /// @throws Ta::Exception -997 if "used" is on
    void EnableVisibility();

protected:
    explicit StructBase(Properties::Node& owner) noexcept
        : ParamsBase(owner)
    {
    }

    ~StructBase() = default;
};
} // namespace Ta::Params
