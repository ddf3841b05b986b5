#pragma once

#include <zApi/zTypes.h>

// The tilt of a normal: how far it leans, and which way. `x` is the angle between the normal and +z, 0 to 180 degrees;
// `y` is the direction of its x, y part, counter-clockwise from +x, above -180 and up to 180 degrees.
//
// | normal | tilt |
// |---|---|
// | +z, or of length 0 | 0, 0 |
// | -z | 180, 0 |
// | +x, -x | 90, 0 and 90, 180 |
// | +y, -y | 90, 90 and 90, -90 |

extern "C"
{
    /// Stores the tilt of `normal`, which may have any length, in `*tilt`. A normal of length 0 has no direction and
    /// counts as level. -999 if a pointer is null, -997 if a component is null or not finite; `*tilt` stays then.
    MU_PLATFORM_EXPORT zStatus TvSurfaceTransform_NormalToTilt(const zPoint3d64f* normal, zPoint64f* tilt);

    /// Stores the normal of length 1 that leans by `tilt` in `*normal`. Every angle is taken, also beyond the ranges
    /// above. -999 if a pointer is null, -997 if an angle is null or not finite; `*normal` stays then.
    MU_PLATFORM_EXPORT zStatus TvSurfaceTransform_TiltToNormal(const zPoint64f* tilt, zPoint3d64f* normal);
}
