#pragma once

#include <zApi/zTypes.h>

namespace Mu::TlkHelper
{
/// A point of a surface with the pixel that it was taken from. Lists of it hold raw records of its size.
struct TlkSurfaceGeneralized3dPoint
{
    z64f x; ///< world position in mm
    z64f y;
    z64f z; ///< `zNULL_64F` for a null pixel
    z32s column;
    z32s row;
    z32s height;   ///< the pixel, `zNULL_16S` for a null pixel
    z8u intensity; ///< 0 for a null pixel, and where the surface has none
};

static_assert(sizeof(TlkSurfaceGeneralized3dPoint) == 40);
} // namespace Mu::TlkHelper
