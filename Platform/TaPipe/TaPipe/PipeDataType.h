#pragma once

#include <zApi/zTypes.h>

namespace TaPipe
{
/// What kind of data an input takes or an output gives.
enum class PipeDataType : z16u
{
    None = 0,
    UniformProfile = 12, ///< points are z16s
    PointProfile = 13,   ///< points are zPoint16s
    UniformSurface = 14, ///< points are z16s
    PointSurface = 15,   ///< points are zPoint3d16s
    Image = 16,
    Measurement = 19,
    Rendering = 70,
    PointFeature = 71,
    LineFeature = 72,
    PlaneFeature = 73,
    CircleFeature = 74,
    Generic = 100,
};

/// The name of a data type for people, "unknown" for a number without one.
MU_PLATFORM_EXPORT const char* PipeDataTypeName(PipeDataType type);

/// A data type, and whether messages come in arrays.
struct PipeDataFormat
{
    PipeDataType type = PipeDataType::None;
    bool isArray = false;

    bool operator==(const PipeDataFormat&) const = default;
};
} // namespace TaPipe
