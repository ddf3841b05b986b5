#pragma once

namespace Mu::Vision
{
/// What a region does with the data.
enum class MaskMode : int
{
    Include = 0, ///< keep what lies inside
    Exclude = 1, ///< keep what lies outside
};

/// The shape of a region.
enum class MaskType : int
{
    Circle = 0,           ///< an annular sector
    Ellipse = 1,          ///< an elliptical sector
    Polygon = 2,          ///< offered to no user
    Rectangle = 3,        //
    Surface = 4,          ///< taken from another surface
    SurfaceIntensity = 5, ///< taken from the intensity of another surface
    WholeRectangle = 8,   ///< the second value that a rectangular region may report; offered to no user
};
} // namespace Mu::Vision
