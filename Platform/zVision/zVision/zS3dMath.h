#pragma once

#include <zApi/zTypes.h>

extern "C"
{
    /// Gives `*vector` the length 1. A vector of length 0 has no direction: it stays, and that is no error. Every other
    /// finite vector is normalised, however long or short.
    /// -999 if `vector` is null, -997 if a component is not finite; the vector stays then.
    MU_PLATFORM_EXPORT zStatus zS3dMath_Normalize64f(zPoint3d64f* vector);
}
