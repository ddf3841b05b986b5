#pragma once

#include <zApi/zExport.h>

#include <cstddef>
#include <cstdint>

// Scalars, statuses, handles and the plain records of the base library.

using z8u = std::uint8_t;
using z8s = std::int8_t;
using z16u = std::uint16_t;
using z16s = std::int16_t;
using z32u = std::uint32_t;
using z32s = std::int32_t;
using z64u = std::uint64_t;
using z64s = std::int64_t;
using z32f = float;
using z64f = double;

/// Result of an operation: `zOK` is success, every other value a failure.
using zStatus = z32s;

inline constexpr zStatus zOK = 1;
inline constexpr zStatus zERROR_PRECONDITION = 0;     ///< a condition of the call does not hold
inline constexpr zStatus zERROR_LIST_TYPE = -980;     ///< a list of another item type
inline constexpr zStatus zERROR_END = -981;           ///< fewer bytes are left in a stream than are asked for
inline constexpr zStatus zERROR_IO = -982;            ///< the system refuses to open, read or write a file or folder
inline constexpr zStatus zERROR_FORMAT = -984;        ///< an element type or format that is not taken
inline constexpr zStatus zERROR_ALREADY_TAKEN = -987; ///< a place or name that is in use
inline constexpr zStatus zERROR_VERSION = -989;       ///< a version that is not known
inline constexpr zStatus zERROR_INTERFACE = -992;     ///< an interface that is not there
inline constexpr zStatus zERROR_ENUM = -996;          ///< a value outside its set
inline constexpr zStatus zERROR_PARAMETER = -997;     ///< an invalid argument, or a result that does not fit
inline constexpr zStatus zERROR_MEMORY = -998;        ///< memory is not to be had
inline constexpr zStatus zERROR_MISSING = -999;       ///< a required thing is null or not there

/// Handles are opaque: an object is known by its operations only.
using zObject = void*;
using zAlloc = void*;
using zArray1 = void*;
using zArray2 = void*;
using zArrayList = void*;
using zString = void*;
using zList = void*;
using zQueue = void*;
using zImage = void*;
using zStream = void*;
using zFile = void*;
using zMemory = void*;
using zSerializer = void*;
using zThreadPool = void*;

struct zPoint16s
{
    z16s x, y;
};

struct zPoint3d16s
{
    z16s x, y, z;
};

struct zPoint32f
{
    z32f x, y;
};

struct zPoint3d32f
{
    z32f x, y, z;
};

struct zPoint64f
{
    z64f x, y;
};

struct zPoint3d64f
{
    z64f x, y, z;
};

struct zRect32s
{
    z32s x, y, width, height;
};

/// A box by its centre and its full extents; `x` equal to `zNULL_64F` means "not known yet".
struct zRect3d64f
{
    z64f x, y, z;
    z64f width, length, height;
};

struct zLine3d64f
{
    zPoint3d64f point;
    zPoint3d64f direction;
};

/// The plane through `point` that `normal` is perpendicular to.
struct zPlane3d64f
{
    zPoint3d64f point;
    zPoint3d64f normal;
};

struct zRgb
{
    z8u b, g, r, a;
};

struct zRgb24
{
    z8u b, g, r;
};

/// A missing value: the lowest finite double. A NaN is not null.
inline constexpr z64f zNULL_64F = -1.7976931348623157e308;
/// A pixel without height.
inline constexpr z16s zNULL_16S = -32768;
