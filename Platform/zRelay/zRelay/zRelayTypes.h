#pragma once

#include <zApi/zTypes.h>

extern "C"
{
    /// Makes the types of this library known to `zLoad6`; saving needs it not. Registering again changes
    /// nothing. From any thread.
    MU_PLATFORM_EXPORT zStatus zRelay_RegisterTypes();
}
