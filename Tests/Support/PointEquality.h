#pragma once

#include <zApi/zTypes.h>

// Points compare by value.

inline bool operator==(const zPoint3d64f& a, const zPoint3d64f& b)
{
    return a.x == b.x && a.y == b.y && a.z == b.z;
}

inline bool operator==(const zPoint64f& a, const zPoint64f& b)
{
    return a.x == b.x && a.y == b.y;
}

inline bool operator==(const zPoint16s& a, const zPoint16s& b)
{
    return a.x == b.x && a.y == b.y;
}
