#pragma once

#include <TaApi/Object.h>
#include <TaApi/Raise.h>

#include <zApi/zArrayList.h>

#include <cstddef>

namespace Mu::TlkHelper::Detail
{
/// An element of a graphic on its way there: constructed, set, added, given up. Every failing status is raised under
/// the place that it was made with, and the element is disposed of.
class GraphicElement
{
public:
    /// Calls `construct(&element, arguments...)`.
    template <typename... Parameters, typename... Arguments>
    GraphicElement(const Ta::Place& caller, zStatus (*construct)(void** element, Parameters...),
                   const Arguments&... arguments)
        : place(caller)
    {
        Ta::Check(place, construct(element.Out(), arguments...));
    }

    /// Calls `setter(element, values...)`.
    template <typename... Parameters, typename... Values>
    GraphicElement& Set(zStatus (*setter)(void* element, Parameters...), const Values&... values)
    {
        Ta::Check(place, setter(element.Get(), values...));
        return *this;
    }

    /// Calls `add(graphic, element)`, which takes the element over.
    void AddTo(void* graphic, zStatus (*add)(void* graphic, void* element))
    {
        Ta::Check(place, add(graphic, element.Get()));
        static_cast<void>(element.Detach());
    }

private:
    Ta::Place place;
    Ta::Object<void*> element;
};

/// A new list of `Point`s in `alloc`, exactly as long as it need be: its items are `pointAt(0)` and so on, in order.
template <typename Point, typename PointAt>
[[nodiscard]] Ta::Object<void*> ListOf(const Ta::Place& place, zType pointType, std::size_t count, void* alloc,
                                       PointAt pointAt)
{
    Ta::Object<void*> list;
    Ta::Check(place, zArrayList_Construct(list.Out(), pointType, count, alloc));
    auto* const points = static_cast<Point*>(zArrayList_Items(list.Get()));
    for (std::size_t i = 0; i < count; ++i)
    {
        points[i] = pointAt(i);
    }
    Ta::Check(place, zArrayList_CountUp(list.Get(), count));
    return list;
}
} // namespace Mu::TlkHelper::Detail
