#pragma once

#include <TaApi/Object.h>
#include <TaPipe/ToolInputInfo.h>

#include <cstddef>
#include <span>
#include <vector>

namespace TaPipe
{
/// The messages that arrived on one input for one execution. The handles are borrowed: the set shares them.
struct MessageInput
{
    std::size_t inputIndex = 0;
    std::span<void* const> messages; ///< null handles and null messages stand for "no data"
};

/// The messages that arrived on one input, as a tool sees them. Valid as long as the set.
class MU_PLATFORM_EXPORT InputItem
{
public:
    InputItem(const ToolInputInfo& source, std::size_t firstMessage, std::size_t messageCount,
              const std::vector<Ta::Object<void*>>& messages);

    [[nodiscard]] const ToolInputInfo& Input() const;
    [[nodiscard]] std::size_t MessageCount() const;

    /// The first message; null when there is none. `nullAsEmpty` true: a null message counts as no data and comes as a
    /// null handle; false: it comes as it is.
    [[nodiscard]] Ta::Object<void*> Message(bool nullAsEmpty) const;

    /// Message `index`, under the same rule; null past the end.
    [[nodiscard]] Ta::Object<void*> MessageAt(std::size_t index, bool nullAsEmpty) const;

private:
    const ToolInputInfo* input;
    std::size_t first;
    std::size_t count;
    const std::vector<Ta::Object<void*>>* pool;
};

/// What the host delivers to a tool for one execution: one item for each input taking part. It holds a reference on
/// every message. Its storage is kept from one execution to the next.
class MU_PLATFORM_EXPORT InputSet
{
public:
    InputSet() = default;
    InputSet(const InputSet&) = delete;
    InputSet& operator=(const InputSet&) = delete;

    [[nodiscard]] std::size_t Count() const;

    /// Item `index` in the order of arrival. @throws Ta::Exception -997 past the end
    [[nodiscard]] const InputItem& At(std::size_t index) const;

    /// The item of the input at `inputIndex` of the tool, null if the input takes no part.
    [[nodiscard]] const InputItem* FindByIndex(std::size_t inputIndex) const;

    /// The item of the input with this id, null if the input takes no part.
    [[nodiscard]] const InputItem* FindByName(const char* id) const;

    /// Adds an item; shares the messages. Items found before stay valid only until the next `Add`.
    void Add(const ToolInputInfo& input, std::span<void* const> messages);

    /// Empties the set and releases its messages.
    void Clear();

private:
    std::vector<InputItem> items;
    std::vector<Ta::Object<void*>> pool;
};
} // namespace TaPipe
