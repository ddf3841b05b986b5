#include <TaApi/ParamsGroup.h>

#include <TaApi/PropertiesValue.h>

#include <algorithm>
#include <memory>

namespace Ta::Params
{
namespace
{
template <typename T>
Properties::Value<T>* EntryOf(const Properties::Node& node, const char* key)
{
    return dynamic_cast<Properties::Value<T>*>(node.FindSchema(key));
}

template <typename T>
void PutEntry(Properties::Node& node, const char* key, const T& value)
{
    if (auto* entry = EntryOf<T>(node, key))
    {
        entry->SetUnchecked(value);
        return;
    }
    node.AdoptSchema(key, std::make_unique<Properties::Value<T>>(value));
}
} // namespace

Group::Group(const std::string& name)
    : Structure(name)
    , StructBase(static_cast<Properties::Node&>(*this))
{
}

Group::~Group() = default;

void Group::Register(const std::string& title, const std::string& key, Properties::Node& child, std::uint32_t sortStep)
{
    RegisterAt(title, key, child, HighestSortOrder() + sortStep);
}

void Group::Register(const std::string& key, Properties::Node& child)
{
    Register(key, key, child);
}

void Group::RegisterAt(const std::string& title, const std::string& key, Properties::Node& child,
                       std::uint32_t sortOrder)
{
    Structure::Register(key, child);
    PutEntry(child, "title", title.empty() ? key : title);
    PutEntry(child, "sortOrder", sortOrder);
}

void Group::RegisterRelative(const std::string& title, const std::string& key, Properties::Node& child,
                             const Properties::Node& previous, std::uint32_t sortStep)
{
    const std::uint32_t sortOrder = GetSortOrder(previous) + sortStep;
    CheckNewSortOrder(MU_HERE, sortOrder, key);
    RegisterAt(title, key, child, sortOrder);
}

void Group::SetSortOrder(Properties::Node& child, std::uint32_t sortOrder)
{
    if (child.Parent() != this)
    {
        MU_FAIL(zERROR_PARAMETER, "%s is not registered in %s.", child.DisplayName(), DisplayName());
    }
    PutEntry(child, "sortOrder", sortOrder);
}

std::uint32_t Group::GetSortOrder(const Properties::Node& child) const
{
    const auto* sortOrder = EntryOf<std::uint32_t>(child, "sortOrder");
    if (child.Parent() != this || sortOrder == nullptr)
    {
        MU_FAIL(zERROR_PARAMETER, "%s is not registered with a sort order in %s.", child.DisplayName(), DisplayName());
    }
    return sortOrder->Get();
}

std::uint32_t Group::HighestSortOrder() const
{
    std::uint32_t highest = 0;
    for (std::size_t i = 0; i < Count(); ++i)
    {
        const auto* sortOrder = EntryOf<std::uint32_t>(At(i), "sortOrder");
        highest = std::max(highest, sortOrder == nullptr ? 0 : sortOrder->Get());
    }
    return highest;
}

void Group::CheckNewSortOrder(const Place& place, std::uint32_t sortOrder, const std::string& key) const
{
    for (std::size_t i = 0; i < Count(); ++i)
    {
        const Properties::Node& child = At(i);
        const auto* present = EntryOf<std::uint32_t>(child, "sortOrder");
        if (present != nullptr && present->Get() == sortOrder)
        {
            MU_FAIL_AT(place, zERROR_ALREADY_TAKEN, "SortOrder %u already registered for %s. Failed to register %s.",
                       sortOrder, child.DisplayName(), key.c_str());
        }
    }
}
} // namespace Ta::Params
