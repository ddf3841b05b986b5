#pragma once

// Marks what a platform library shows to others; everything else is hidden by the build.
#if defined(_WIN32)
#define MU_PLATFORM_EXPORT
#else
#define MU_PLATFORM_EXPORT __attribute__((visibility("default")))
#endif
