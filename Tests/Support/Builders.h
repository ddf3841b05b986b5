#pragma once

#include <TaApi/Object.h>
#include <TaVision/TaVision.h>

#include <algorithm>
#include <cstddef>
#include <vector>

// Makes a message in one line: `Surface({{1, 2}, {3, NullPixel}}).Offset(0, 0, 5).Scale(0.1, 0.2, 0.001)`. Every
// builder converts to a handle that shares its message. A failing status is raised.

namespace Support
{
inline constexpr z16s NullPixel = zNULL_16S;

template <typename Item>
using Rows = std::vector<std::vector<Item>>;

/// What can be set on every message. `Builder` is the class that derives from this.
template <typename Builder>
class MessageBuilder
{
public:
    operator Ta::Object<void*>() const // NOLINT(google-explicit-constructor): a builder stands for its message
    {
        return message;
    }

    /// The message, valid while the builder lives.
    [[nodiscard]] void* Get() const
    {
        return message.Get();
    }

    /// Centre and full extents in mm.
    Builder& BoundingBox(const zRect3d64f& box)
    {
        MU_CHECK(TvDataMsg_SetBoundingBox(Get(), &box));
        return Self();
    }

    Builder& Transform(const TvFoRTransform& transform)
    {
        MU_CHECK(TvDataMsg_SetTransform(Get(), &transform));
        return Self();
    }

    Builder& Stamp(const zStamp& stamp)
    {
        MU_CHECK(TvDataMsg_SetStamp(Get(), &stamp));
        return Self();
    }

protected:
    MessageBuilder() = default;

    Builder& Self()
    {
        return static_cast<Builder&>(*this);
    }

    Ta::Object<void*> message;
};

/// The operations of a family of messages with samples.
struct SamplesFamily
{
    zStatus (*setOffset)(void*, const zPoint3d64f*);
    zStatus (*setScale)(void*, const zPoint3d64f*);
    zStatus (*allocateIntensity)(void*, zType);
    void* (*intensity)(void*);
};

inline constexpr SamplesFamily SURFACE_FAMILY = {TvSurfaceMsg_SetOffset, TvSurfaceMsg_SetScale,
                                                 TvSurfaceMsg_AllocateIntensity, TvSurfaceMsg_Intensity};
inline constexpr SamplesFamily PROFILE_FAMILY = {TvProfileMsg_SetOffset, TvProfileMsg_SetScale,
                                                 TvProfileMsg_AllocateIntensity, TvProfileMsg_Intensity};

/// What can be set on surfaces and profiles.
template <typename Builder, const SamplesFamily& Family>
class SamplesBuilder : public MessageBuilder<Builder>
{
public:
    /// World position of pixel 0, in mm.
    Builder& Offset(double x, double y, double z)
    {
        const zPoint3d64f offset = {x, y, z};
        MU_CHECK(Family.setOffset(this->Get(), &offset));
        return this->Self();
    }

    /// World size of one pixel step, in mm.
    Builder& Scale(double x, double y, double z)
    {
        const zPoint3d64f scale = {x, y, z};
        MU_CHECK(Family.setScale(this->Get(), &scale));
        return this->Self();
    }

protected:
    /// Sets intensities of `itemType`, whose items are `Item`, row by row.
    template <typename Item>
    Builder& FillIntensity(zType itemType, const Rows<Item>& rows)
    {
        MU_CHECK(Family.allocateIntensity(this->Get(), itemType));
        Fill(static_cast<Item*>(Family.intensity(this->Get())), rows);
        return this->Self();
    }

    /// Copies rows to a grid of the message's size. All rows are as wide as the message, or this raises -997.
    template <typename Item>
    void Fill(Item* target, const Rows<Item>& rows)
    {
        const std::size_t width = TvDataMsg_Width(this->Get());
        if (rows.size() != TvDataMsg_Length(this->Get()))
        {
            MU_FAIL(zERROR_PARAMETER, "%zu rows for a message of another length", rows.size());
        }
        for (const std::vector<Item>& row : rows)
        {
            if (row.size() != width)
            {
                MU_FAIL(zERROR_PARAMETER, "a row of %zu items in a message of width %zu", row.size(), width);
            }
            target = std::copy(row.begin(), row.end(), target);
        }
    }
};

class SurfaceBuilder : public SamplesBuilder<SurfaceBuilder, SURFACE_FAMILY>
{
public:
    template <typename Pixel, typename ConstructSurface>
    SurfaceBuilder(const Rows<Pixel>& rows, const ConstructSurface& construct, zAlloc alloc)
    {
        const std::size_t width = rows.empty() ? 0 : rows.front().size();
        MU_CHECK(construct(message.Out(), width, rows.size(), alloc));
        Fill(static_cast<Pixel*>(TvSurfaceMsg_Points(Get())), rows);
    }

    /// 8-bit intensities, row by row.
    SurfaceBuilder& Intensity(const Rows<z8u>& rows)
    {
        return FillIntensity(zTypeOf(z8u), rows);
    }

    /// 16-bit intensities, row by row.
    SurfaceBuilder& Intensity16(const Rows<z16u>& rows)
    {
        return FillIntensity(zTypeOf(z16u), rows);
    }
};

class ProfileBuilder : public SamplesBuilder<ProfileBuilder, PROFILE_FAMILY>
{
public:
    template <typename Pixel>
    ProfileBuilder(const std::vector<Pixel>& points, zType pointType, zAlloc alloc)
    {
        MU_CHECK(TvProfileMsg_Construct(message.Out(), pointType, 1, points.size(), alloc));
        Fill(static_cast<Pixel*>(TvProfileMsg_Points(Get())), Rows<Pixel>{points});
    }

    /// 8-bit intensities.
    ProfileBuilder& Intensity(const std::vector<z8u>& row)
    {
        return FillIntensity(zTypeOf(z8u), Rows<z8u>{row});
    }

    /// 16-bit intensities.
    ProfileBuilder& Intensity16(const std::vector<z16u>& row)
    {
        return FillIntensity(zTypeOf(z16u), Rows<z16u>{row});
    }
};

class MeasureBuilder : public MessageBuilder<MeasureBuilder>
{
public:
    MeasureBuilder(double value, zAlloc alloc)
    {
        MU_CHECK(TvMeasureMsg_Construct(message.Out(), 1, 0, alloc));
        MU_CHECK(TvMeasureMsg_SetValue(Get(), value));
    }

    MeasureBuilder& Failed()
    {
        MU_CHECK(TvMeasureMsg_SetStatus(Get(), false));
        return *this;
    }

    MeasureBuilder& Label(double x, double y, double z)
    {
        MU_CHECK(TvMeasureMsg_SetLabelPosition(Get(), x, y, z));
        return *this;
    }
};

class NullMessageBuilder : public MessageBuilder<NullMessageBuilder>
{
public:
    explicit NullMessageBuilder(zAlloc alloc)
    {
        MU_CHECK(TvNullMsg_Construct(message.Out(), 0, alloc));
    }
};

class GenericBuilder : public MessageBuilder<GenericBuilder>
{
public:
    GenericBuilder(z32u dataType, const std::vector<z8u>& bytes, zAlloc alloc)
    {
        MU_CHECK(TvGenericMsg_Construct(message.Out(), dataType, bytes.size(), alloc));
        MU_CHECK(TvGenericMsg_SetBuffer(Get(), bytes.data()));
    }
};

class ImageBuilder : public MessageBuilder<ImageBuilder>
{
public:
    /// All rows are as wide as the first, or this raises -997.
    template <typename Pixel>
    ImageBuilder(const Rows<Pixel>& rows, TvPixelFormat format, zAlloc alloc)
    {
        const std::size_t width = rows.empty() ? 0 : rows.front().size();
        MU_CHECK(TvImageMsg_Construct(message.Out(), width, rows.size(), sizeof(Pixel), format, 0, alloc));
        for (std::size_t row = 0; row < rows.size(); ++row)
        {
            if (rows[row].size() != width)
            {
                MU_FAIL(zERROR_PARAMETER, "a row of %zu pixels in an image of width %zu", rows[row].size(), width);
            }
            std::copy(rows[row].begin(), rows[row].end(), static_cast<Pixel*>(TvDataMsg_Ranges(Get(), row, 0)));
        }
    }
};

class PointFeatureBuilder : public MessageBuilder<PointFeatureBuilder>
{
public:
    PointFeatureBuilder(const zPoint3d64f& position, zAlloc alloc)
    {
        MU_CHECK(TvPointFeatureMsg_Construct(message.Out(), 1, alloc));
        MU_CHECK(TvPointFeatureMsg_SetPosition(Get(), &position));
    }
};

class LineFeatureBuilder : public MessageBuilder<LineFeatureBuilder>
{
public:
    LineFeatureBuilder(const zPoint3d64f& position, const zPoint3d64f& direction, zAlloc alloc)
    {
        MU_CHECK(TvLineFeatureMsg_Construct(message.Out(), 1, alloc));
        MU_CHECK(TvLineFeatureMsg_SetPosition(Get(), &position));
        MU_CHECK(TvLineFeatureMsg_SetDirection(Get(), &direction));
    }
};

class CircleFeatureBuilder : public MessageBuilder<CircleFeatureBuilder>
{
public:
    CircleFeatureBuilder(const zPoint3d64f& position, const zPoint3d64f& normal, double radius, zAlloc alloc)
    {
        MU_CHECK(TvCircleFeatureMsg_Construct(message.Out(), 1, alloc));
        MU_CHECK(TvCircleFeatureMsg_SetPosition(Get(), &position));
        MU_CHECK(TvCircleFeatureMsg_SetNormal(Get(), &normal));
        MU_CHECK(TvCircleFeatureMsg_SetRadius(Get(), radius));
    }
};

class PlaneFeatureBuilder : public MessageBuilder<PlaneFeatureBuilder>
{
public:
    PlaneFeatureBuilder(const zPoint3d64f& normal, double distance, zAlloc alloc)
    {
        MU_CHECK(TvPlaneFeatureMsg_Construct(message.Out(), 1, alloc));
        MU_CHECK(TvPlaneFeatureMsg_SetNormal(Get(), &normal));
        MU_CHECK(TvPlaneFeatureMsg_SetOriginDistance(Get(), distance));
    }
};

class RenderingBuilder : public MessageBuilder<RenderingBuilder>
{
public:
    RenderingBuilder(Ta::Object<void*> graphic, zAlloc alloc)
    {
        MU_CHECK(TvRenderingMsg_Construct(message.Out(), alloc));
        MU_CHECK(TvRenderingMsg_SetRendering(Get(), graphic.Get()));
        static_cast<void>(graphic.Detach());
    }
};

/// A resampled surface of the heights in `rows`.
inline SurfaceBuilder Surface(const Rows<z16s>& rows, zAlloc alloc = nullptr)
{
    return {rows, TvSurfaceMsg_ConstructSimple, alloc};
}

/// An unresampled surface of the triples in `rows`.
inline SurfaceBuilder PointSurface(const Rows<zPoint3d16s>& rows, zAlloc alloc = nullptr)
{
    return {rows, TvSurfaceMsg_ConstructUnresampledSimple, alloc};
}

/// A resampled profile of `heights`.
inline ProfileBuilder Profile(const std::vector<z16s>& heights, zAlloc alloc = nullptr)
{
    return {heights, zTypeOf(z16s), alloc};
}

/// An unresampled profile of the pairs in `points`: x, then z.
inline ProfileBuilder PointProfile(const std::vector<zPoint16s>& points, zAlloc alloc = nullptr)
{
    return {points, zTypeOf(zPoint16s), alloc};
}

/// A measurement of a value.
inline MeasureBuilder Measure(double value, zAlloc alloc = nullptr)
{
    return {value, alloc};
}

/// The message of an output without data.
inline NullMessageBuilder NullMessage(zAlloc alloc = nullptr)
{
    return NullMessageBuilder(alloc);
}

/// A generic message of `bytes`.
inline GenericBuilder Generic(z32u dataType, const std::vector<z8u>& bytes, zAlloc alloc = nullptr)
{
    return {dataType, bytes, alloc};
}

/// An image of the pixels in `rows`, whose type is that of `format`.
template <typename Pixel>
ImageBuilder Image(const Rows<Pixel>& rows, TvPixelFormat format, zAlloc alloc = nullptr)
{
    return {rows, format, alloc};
}

/// An image of 8-bit brightness.
inline ImageBuilder Image(const Rows<z8u>& rows, zAlloc alloc = nullptr)
{
    return {rows, TvPIXEL_FORMAT_GREY8, alloc};
}

/// A point feature.
inline PointFeatureBuilder PointFeature(const zPoint3d64f& position, zAlloc alloc = nullptr)
{
    return {position, alloc};
}

/// A line feature through `position`.
inline LineFeatureBuilder LineFeature(const zPoint3d64f& position, const zPoint3d64f& direction, zAlloc alloc = nullptr)
{
    return {position, direction, alloc};
}

/// A circle feature around `position`.
inline CircleFeatureBuilder CircleFeature(const zPoint3d64f& position, const zPoint3d64f& normal, double radius,
                                          zAlloc alloc = nullptr)
{
    return {position, normal, radius, alloc};
}

/// A plane feature: normal . p = distance.
inline PlaneFeatureBuilder PlaneFeature(const zPoint3d64f& normal, double distance, zAlloc alloc = nullptr)
{
    return {normal, distance, alloc};
}

/// A message that carries `graphic`, which it shares.
inline RenderingBuilder Rendering(const Ta::Object<void*>& graphic, zAlloc alloc = nullptr)
{
    return {graphic, alloc};
}
} // namespace Support
