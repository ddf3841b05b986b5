#pragma once

#include <zApi/zTypes.h>

extern "C"
{
    /// Makes the messages of this library, and the types of `zRelay` below it, known to `zLoad6`; saving
    /// needs it not. Registering again changes nothing. From any thread.
    MU_PLATFORM_EXPORT zStatus TaVision_RegisterTypes();
}
