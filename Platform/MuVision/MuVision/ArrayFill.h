#pragma once

#include <zApi/zTypes.h>

namespace Mu::Vision
{
/// Fills a `zArray1` with the lowest value of its item type, which is the null value of pixels and floats; every
/// component of points and colours takes it. An array of length 0 stays as it is.
/// -997 if `array` is no `zArray1`, -984 if its item type has no lowest value (objects and raw records); it stays then.
[[nodiscard]] MU_PLATFORM_EXPORT zStatus Array1FillMin(void* array);
} // namespace Mu::Vision
