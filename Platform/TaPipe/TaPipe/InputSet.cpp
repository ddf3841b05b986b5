#include <TaPipe/InputSet.h>

#include <TaVision/TvNullMsg.h>
#include <zApi/zString.h>

#include <algorithm>

namespace TaPipe
{
InputItem::InputItem(const ToolInputInfo& source, std::size_t firstMessage, std::size_t messageCount,
                     const std::vector<Ta::Object<void*>>& messages)
    : input(&source)
    , first(firstMessage)
    , count(messageCount)
    , pool(&messages)
{
}

const ToolInputInfo& InputItem::Input() const
{
    return *input;
}

std::size_t InputItem::MessageCount() const
{
    return count;
}

Ta::Object<void*> InputItem::Message(bool nullAsEmpty) const
{
    return MessageAt(0, nullAsEmpty);
}

Ta::Object<void*> InputItem::MessageAt(std::size_t index, bool nullAsEmpty) const
{
    if (index >= count)
    {
        return {};
    }
    const Ta::Object<void*>& message = (*pool)[first + index];
    if (nullAsEmpty && xzCastClass_ObjectIs(message.Get(), zTypeOf(TvNullMsg)))
    {
        return {};
    }
    return message;
}

std::size_t InputSet::Count() const
{
    return items.size();
}

const InputItem& InputSet::At(std::size_t index) const
{
    if (index >= items.size())
    {
        MU_FAIL(zERROR_PARAMETER, "The input set has %zu items, item %zu was asked for.", items.size(), index);
    }
    return items[index];
}

const InputItem* InputSet::FindByIndex(std::size_t inputIndex) const
{
    const auto found =
        std::ranges::find_if(items, [inputIndex](const InputItem& item) { return item.Input().Index() == inputIndex; });
    return found == items.end() ? nullptr : &*found;
}

const InputItem* InputSet::FindByName(const char* id) const
{
    const auto found =
        std::ranges::find_if(items, [id](const InputItem& item) { return zStrEquals(item.Input().Id(), id) != 0; });
    return found == items.end() ? nullptr : &*found;
}

void InputSet::Add(const ToolInputInfo& input, std::span<void* const> messages)
{
    const std::size_t first = pool.size();
    for (void* const message : messages)
    {
        Ta::Object<void*> shared;
        shared.Reset(message, true);
        pool.push_back(std::move(shared));
    }
    items.emplace_back(input, first, messages.size(), pool);
}

void InputSet::Clear()
{
    items.clear();
    pool.clear();
}
} // namespace TaPipe
