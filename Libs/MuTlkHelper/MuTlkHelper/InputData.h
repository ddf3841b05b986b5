#pragma once

#include <TaApi/Object.h>

#include <zApi/zTypes.h>

namespace Mu::TlkHelper
{
/// What is asked again and again of one surface message. Filled by `SetInputData` only; later changes of the message do
/// not show in it. A new one holds no message, and its numbers are not set.
struct InputData
{
    z32s width;                ///< columns
    z32s length;               ///< rows
    zPoint3d64f offset;        ///< world position of column, row and height 0, in mm
    zPoint3d64f scale;         ///< world size of one step in column, row and height, in mm
    z32s hasIntensity;         ///< not 0 if the message has intensities
    Ta::Object<void*> surface; ///< the message, shared
};
} // namespace Mu::TlkHelper
