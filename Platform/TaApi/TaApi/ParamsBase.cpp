#include <TaApi/ParamsBase.h>

#include <TaApi/Logging.h>

namespace Ta::Params
{
namespace
{
constexpr const char* VALIDATION = "Params validation";

using Texts = std::vector<std::string>;
} // namespace

bool ParamsBase::GetUsed() const
{
    const auto* used = Entry<bool>("used");
    return used == nullptr || used->Get();
}

void ParamsBase::SetUsed(bool used)
{
    EnableUsed();
    SetEntry(MU_HERE, "used", used);
}

void ParamsBase::EnableUsed()
{
    if (IsVisibilityEnabled())
    {
        MU_FAIL(zERROR_PARAMETER, "Visibility is already enabled, cannot enable used.");
    }
    if (!IsUsedEnabled())
    {
        EnableEntry("used", true);
    }
}

bool ParamsBase::IsUsedEnabled() const
{
    return Entry<bool>("used") != nullptr;
}

bool ParamsBase::GetReadOnly() const
{
    const auto* readOnly = Entry<bool>("readOnly");
    return readOnly != nullptr && readOnly->Get();
}

void ParamsBase::EnableReadOnly(bool readOnly)
{
    EnableEntry("readOnly", readOnly);
}

void ParamsBase::SetReadOnly(bool readOnly)
{
    SetEntry(MU_HERE, "readOnly", readOnly);
}

bool ParamsBase::IsVisibilityEnabled() const
{
    return Entry<Texts>("visibility") != nullptr;
}

const std::vector<std::string>& ParamsBase::GetVisibility() const
{
    return GetEntry<Texts>(MU_HERE, "visibility");
}

void ParamsBase::SetVisibility(const std::vector<std::string>& types)
{
    SetEntry(MU_HERE, "visibility", types);
}

void ParamsBase::ClearVisibility()
{
    auto* visibility = Entry<Texts>("visibility");
    if (visibility == nullptr)
    {
        MU_FAIL(zERROR_PARAMETER, "Visibility not enabled, cannot clear visibility types");
    }
    visibility->SetUnchecked({});
}

void ParamsBase::EnableVisibilityAt(const Place& place)
{
    if (IsUsedEnabled())
    {
        MU_FAIL_AT(place, zERROR_PARAMETER, "Used is already enabled, cannot enable visibility.");
    }
    if (!IsVisibilityEnabled())
    {
        EnableEntry("visibility", Texts{});
    }
}

std::string ParamsBase::GetTitle() const
{
    const auto* title = Entry<std::string>("title");
    return title == nullptr ? std::string() : title->Get();
}

void ParamsBase::SetTitle(const std::string& title)
{
    EnableEntry("title", title);
}

const std::string& ParamsBase::GetDescription() const
{
    return GetEntry<std::string>(MU_HERE, "description");
}

void ParamsBase::SetDescription(const std::string& description)
{
    SetEntry(MU_HERE, "description", description);
}

void ParamsBase::EnableDescription(const std::string& first)
{
    EnableEntry("description", first);
}

const std::string& ParamsBase::GetExtendedType() const
{
    return GetEntry<std::string>(MU_HERE, "extendedType");
}

void ParamsBase::SetExtendedType(const std::string& extendedType)
{
    SetEntry(MU_HERE, "extendedType", extendedType);
}

void ParamsBase::EnableExtendedType(const std::string& first)
{
    EnableEntry("extendedType", first);
}

// A log that fails must not hide the validation's own answer: the status of these two lines is dropped on purpose.
void ParamsBase::LogReadOnly(const Place& place) const
{
    static_cast<void>(Logging::Ta_Debug_Log(place.line, place.unit, Logging::LEVEL_WARNING, VALIDATION,
                                            "%s is read-only.", ownNode->DisplayName()));
}

void ParamsBase::FailValidation(const Place& place, const char* violation) const
{
    static_cast<void>(Logging::Ta_Debug_Log(place.line, place.unit, Logging::LEVEL_ERROR, VALIDATION, "%s %s",
                                            ownNode->DisplayName(), violation));
    MU_FAIL_AT(place, zERROR_PARAMETER, "%s %s", ownNode->DisplayName(), violation);
}

void ParamsBase::FailUsing(const Place& place, const char* key) const
{
    MU_FAIL_AT(place, zERROR_PARAMETER, "Must enable '%s' before using it.", key);
}

void ParamsBase::FailSetting(const Place& place, const char* key) const
{
    MU_FAIL_AT(place, zERROR_PARAMETER, "Must enable '%s' before setting the value.", key);
}

void StructBase::EnableVisibility()
{
    EnableVisibilityAt(MU_HERE);
}
} // namespace Ta::Params
