#pragma once

#include <zApi/zTypes.h>

extern "C"
{
    /// Makes the graphics of this library, and the types of the libraries below it, known to `zLoad6`; saving needs it
    /// not. Registering again changes nothing. From any thread.
    MU_PLATFORM_EXPORT zStatus TaPipe_RegisterTypes();
}
