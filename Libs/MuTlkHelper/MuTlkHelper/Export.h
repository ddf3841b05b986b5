#pragma once

// Marks what the library shows to tools and hosts; everything else is hidden by the build.
#if defined(_WIN32)
#define MU_TLK_EXPORT
#else
#define MU_TLK_EXPORT __attribute__((visibility("default")))
#endif
