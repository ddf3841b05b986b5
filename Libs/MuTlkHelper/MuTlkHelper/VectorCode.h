#pragma once

// clang does not take this header of the C library in plain C++.
#if defined(__x86_64__) && !defined(__clang__) && __has_include(<sys/platform/x86.h>)
#include <sys/platform/x86.h>
#define MU_HAS_AVX2_CODE 1
#else
#define MU_HAS_AVX2_CODE 0
#endif

// Loops that are compiled twice: for every machine of the kind, and for those with wider vectors. Both give the same
// bytes. Most loops gain nothing by it, since memory sets their pace; those that do ask here.

namespace Mu::TlkHelper
{
enum class VectorCode
{
    Portable,
    Avx2
};

/// What this machine runs. The C library has asked the processor at its start, so that this is no more than a look.
inline VectorCode BestVectorCode()
{
#if MU_HAS_AVX2_CODE
    return CPU_FEATURE_ACTIVE(AVX2) ? VectorCode::Avx2 : VectorCode::Portable;
#else
    return VectorCode::Portable;
#endif
}
} // namespace Mu::TlkHelper
