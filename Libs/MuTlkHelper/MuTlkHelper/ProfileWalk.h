#pragma once

#include <MuTlkHelper/MessageView.h>

#include <MuVision/Regions.h>

#include <algorithm>
#include <cstddef>
#include <optional>
#include <vector>

// The walks over the points of a profile, and the masks that selections lay over copies of it.

namespace Mu::TlkHelper
{
/// Where kept points go: always to `points`, and in step with them to `intensities`, unless that is null.
struct ProfileLists
{
    zArrayList points;
    zArrayList intensities = nullptr;
};

/// Adds the points of `span` that `selection` keeps; whatever fails is raised at `place`.
template <typename Selection, typename Make>
void WalkProfile(const Ta::Place& place, const ProfileView& profile, const Span& span, const Selection& selection,
                 const Make& make, const ProfileLists& lists)
{
    constexpr Span ONE_ROW{0, 1};
    ListRun<zPoint64f> points(place, lists.points);
    if (lists.intensities == nullptr)
    {
        const auto row = [&](std::size_t, const auto& visit) { visit(span, selection, Output(points, make)); };
        WalkRows(ONE_ROW, row, points);
        return;
    }
    ListRun<z8u> intensities(place, lists.intensities);
    const auto row = [&](std::size_t, const auto& visit) {
        visit(span, selection, Output(points, make), Output(intensities, Intensities{profile.intensity}));
    };
    WalkRows(ONE_ROW, row, points, intensities);
}

/// Height pixels of `span` within `heights`.
inline void WalkPixels(const Ta::Place& place, const ProfileView& profile, const Span& span, const Window& heights,
                       const ProfileLists& lists)
{
    const Windows<1> windows({heights});
    WalkProfile(place, profile, span, WindowSelection<1>(profile.Pixels(), windows),
                LinePoints{profile.frame, profile.Pixels()}, lists);
}

/// Pairs of which both components are there.
inline void WalkWholePairs(const Ta::Place& place, const ProfileView& profile, const ProfileLists& lists)
{
    const Windows<2> windows({NOT_NULL, NOT_NULL});
    WalkProfile(place, profile, {0, profile.count}, WindowSelection<2>(ComponentsOf(profile.Pairs()), windows),
                PairPoints{profile.frame, profile.Pairs()}, lists);
}

/// A region in the plane of a profile, without its angle.
struct PlaneBox
{
    Bounds x;
    Bounds z;

    explicit PlaneBox(const Mu::Vision::RegionXZ<double>& region)
        : x(BoundsOf(region.x, region.width))
        , z(BoundsOf(region.z, region.height))
    {
    }

    [[nodiscard]] bool Hold(const zPoint64f& point) const
    {
        return (static_cast<int>(x.Hold(point.x)) & static_cast<int>(z.Hold(point.y))) != 0;
    }

    /// The windows of the samples that lie in the box, null if the axes are not finite.
    [[nodiscard]] std::optional<Windows<2>> Samples(const Frame& frame) const
    {
        const auto inX = SamplesIn(x, frame.x);
        const auto inZ = SamplesIn(z, frame.z);
        if (!inX || !inZ)
        {
            return std::nullopt;
        }
        // Required: a null x counts as a value like any other, only a null z is left out.
        return Windows<2>({*inX, HeightWindow(inZ->low, inZ->high)});
    }
};

/// Hands `use` the selection of the pairs whose z is there and whose world point lies in the box of `region`.
template <typename Use>
void SelectPairs(const PairPoints& points, const Mu::Vision::RegionXZ<double>& region, const Use& use)
{
    const PlaneBox box(region);
    const auto* const components = ComponentsOf(points.pairs);
    if (const std::optional<Windows<2>> windows = box.Samples(points.frame))
    {
        use(WindowSelection<2>(components, *windows));
        return;
    }
    const Windows<2> withHeight({EVERY_PIXEL, NOT_NULL});
    const auto isInside = [&box, &points](std::size_t i) { return box.Hold(points(i)); };
    use(TestedSelection(WindowSelection<2>(components, withHeight), isInside));
}

inline void WalkPairs(const Ta::Place& place, const ProfileView& profile, const Mu::Vision::RegionXZ<double>& region,
                      const ProfileLists& lists)
{
    const PairPoints points{profile.frame, profile.Pairs()};
    SelectPairs(points, region, [&](const auto& selection) {
        WalkProfile(place, profile, {0, profile.count}, selection, points, lists);
    });
}

/// A box of elements: the run of them that it may hold, and the windows of their values.
template <std::size_t COMPONENTS>
struct ElementBox
{
    Span span;
    Windows<COMPONENTS> windows;
};

/// Keeps what one of several boxes holds.
template <std::size_t COMPONENTS>
class AnyBoxSelection
{
public:
    AnyBoxSelection(const z16s* components, const std::vector<ElementBox<COMPONENTS>>& newBoxes)
        : elements(components)
        , boxes(newBoxes)
    {
    }

    void operator()(std::size_t first, std::size_t count, Flags& flags) const
    {
        Flags inBox;
        flags.fill(0);
        for (const ElementBox<COMPONENTS>& box : boxes)
        {
            const Span part{std::max(first, box.span.first), std::min(first + count, box.span.end)};
            WindowSelection<COMPONENTS>(elements, box.windows)(part.first, part.Count(), inBox);
            for (std::size_t i = 0; i < part.Count(); ++i)
            {
                flags[part.first - first + i] |= inBox[i];
            }
        }
    }

private:
    const z16s* elements;
    const std::vector<ElementBox<COMPONENTS>>& boxes;
};

// Masks: what is not kept becomes null, what was null stays as it was.

inline bool IsNull(z16s pixel)
{
    return pixel == zNULL_16S;
}

inline bool IsNull(const zPoint16s& pair)
{
    return pair.y == zNULL_16S;
}

inline void MakeNull(z16s& pixel)
{
    pixel = zNULL_16S;
}

inline void MakeNull(zPoint16s& pair)
{
    pair = {zNULL_16S, zNULL_16S};
}

/// Elements that `selection` does not keep; with each of them its intensity becomes 0, unless `intensities` is null.
template <typename Element, typename Selection>
void MaskElements(Element* elements, z8u* intensities, std::size_t count, const Selection& selection)
{
    Flags flags;
    for (std::size_t first = 0; first < count; first += BLOCK)
    {
        const std::size_t inBlock = std::min(BLOCK, count - first);
        selection(first, inBlock, flags);
        for (std::size_t i = 0; i < inBlock; ++i)
        {
            flags[i] |= static_cast<z8u>(IsNull(elements[first + i]));
        }
        for (std::size_t i = 0; i < inBlock; ++i)
        {
            if (flags[i] == 0)
            {
                MakeNull(elements[first + i]);
            }
        }
        for (std::size_t i = 0; intensities != nullptr && i < inBlock; ++i)
        {
            intensities[first + i] = static_cast<z8u>(intensities[first + i] * flags[i]);
        }
    }
}
} // namespace Mu::TlkHelper
