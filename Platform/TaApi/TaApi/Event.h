#pragma once

#include <cstddef>
#include <functional>
#include <utility>
#include <vector>

namespace Ta
{
/// A list of listeners that are called, in the order in which they came, each time the event is raised.
/// Not guarded: it is used from the calls on one tool, which never overlap.
template <typename... Arguments>
class Event
{
public:
    using Listener = std::function<void(Arguments...)>;

    /// Adds a listener; the number returned takes it away again.
    std::size_t Add(Listener listener)
    {
        listeners.emplace_back(++lastNumber, std::move(listener));
        return lastNumber;
    }

    /// Takes a listener away; an unknown number changes nothing.
    void Remove(std::size_t number)
    {
        std::erase_if(listeners, [number](const auto& entry) { return entry.first == number; });
    }

    /// Calls the listeners that are there at this moment.
    void Raise(Arguments... arguments) const
    {
        const auto present = listeners;
        for (const auto& [number, listener] : present)
        {
            listener(arguments...);
        }
    }

private:
    std::vector<std::pair<std::size_t, Listener>> listeners;
    std::size_t lastNumber = 0;
};
} // namespace Ta
