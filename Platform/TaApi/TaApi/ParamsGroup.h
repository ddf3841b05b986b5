#pragma once

#include <TaApi/ParamsBase.h>
#include <TaApi/Structure.h>

#include <cstdint>
#include <string>

namespace Ta::Params
{
/// A group of parameters: a structure whose children have a title and a place, the sort order, for the user.
/// An empty title takes the key as title.
class MU_PLATFORM_EXPORT Group : public Properties::Structure, public StructBase
{
public:
    explicit Group(const std::string& name = {});
    ~Group() override;

    /// Adds a child behind all others: its sort order is the highest of the group plus `sortStep`, `sortStep` in an
    /// empty group. @throws Ta::Exception as `Structure::Register`
    void Register(const std::string& title, const std::string& key, Properties::Node& child,
                  std::uint32_t sortStep = DEFAULT_SORT_STEP);

    /// The same with the key as title.
    void Register(const std::string& key, Properties::Node& child);

    /// Adds a child at a sort order of the caller's choice. Several children may have the same one; they then stand in
    /// the order in which they were registered. @throws Ta::Exception as `Structure::Register`
    void RegisterAt(const std::string& title, const std::string& key, Properties::Node& child, std::uint32_t sortOrder);

    /// Adds a child at the sort order of `previous` plus `sortStep`.
    /// @throws Ta::Exception -987 if another child has that sort order; -997 if `previous` is no child of this group;
    /// otherwise as `Structure::Register`. Nothing is registered then.
    void RegisterRelative(const std::string& title, const std::string& key, Properties::Node& child,
                          const Properties::Node& previous, std::uint32_t sortStep = 1);

    /// Moves a child. Several children may have the same order.
    /// @throws Ta::Exception -997 if `child` is no child of this group
    void SetSortOrder(Properties::Node& child, std::uint32_t sortOrder);

    /// @throws Ta::Exception -997 if `child` is no child of this group or has no sort order
    [[nodiscard]] std::uint32_t GetSortOrder(const Properties::Node& child) const;

    static constexpr std::uint32_t DEFAULT_SORT_STEP = 100;

private:
    [[nodiscard]] std::uint32_t HighestSortOrder() const;
    void CheckNewSortOrder(const Place& place, std::uint32_t sortOrder, const std::string& key) const;
};
} // namespace Ta::Params
