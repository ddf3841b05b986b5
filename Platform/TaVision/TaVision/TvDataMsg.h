#pragma once

#include <TaVision/TvFoRTransform.h>
#include <TaVision/TvMsg.h>

/// The base of the messages that carry samples (surfaces, profiles, images); abstract.
zDECLARE_TYPE(TvDataMsg);

using TvDataMsg = void*;

/// The space in which the coordinates of a message are told. The platform passes the number on; 0 in a new message.
using TvSpaceType = z32s;

// Properties of every message, samples or none. The setters copy what they are handed; each gives -997 if `msg` is no
// message and -999 for a null pointer, and then changes nothing.

extern "C"
{
    /// True if the bounding box is known.
    MU_PLATFORM_EXPORT bool TvDataMsg_HasBoundingBox(TvMsg msg);

    /// The bounding box in mm; all six fields are `zNULL_64F` if it is not known or `msg` is no message.
    MU_PLATFORM_EXPORT zRect3d64f TvDataMsg_BoundingBox(TvMsg msg);

    /// Sets the bounding box. A box whose `x` is `zNULL_64F` makes it unknown.
    MU_PLATFORM_EXPORT zStatus TvDataMsg_SetBoundingBox(TvMsg msg, const zRect3d64f* box);

    /// The transform to the frame of reference; the identity in a new message, or if `msg` is no message.
    MU_PLATFORM_EXPORT TvFoRTransform TvDataMsg_Transform(TvMsg msg);

    /// Sets the transform to the frame of reference.
    MU_PLATFORM_EXPORT zStatus TvDataMsg_SetTransform(TvMsg msg, const TvFoRTransform* transform);

    /// Stamp 0, all zero in a new message or if `msg` is no message. Time and encoder of a message are part of it.
    MU_PLATFORM_EXPORT zStamp TvDataMsg_Stamp(TvMsg msg);

    /// Sets stamp 0.
    MU_PLATFORM_EXPORT zStatus TvDataMsg_SetStamp(TvMsg msg, const zStamp* stamp);

    /// The time of stamp 0.
    MU_PLATFORM_EXPORT z64u TvDataMsg_Time(TvMsg msg);

    /// Sets the time of stamp 0.
    MU_PLATFORM_EXPORT zStatus TvDataMsg_SetTime(TvMsg msg, z64u time);

    /// The encoder value of stamp 0.
    MU_PLATFORM_EXPORT z64s TvDataMsg_Encoder(TvMsg msg);

    /// Sets the encoder value of stamp 0.
    MU_PLATFORM_EXPORT zStatus TvDataMsg_SetEncoder(TvMsg msg, z64s encoder);

    /// The space type.
    MU_PLATFORM_EXPORT TvSpaceType TvDataMsg_SpaceType(TvMsg msg);

    /// Sets the space type.
    MU_PLATFORM_EXPORT zStatus TvDataMsg_SetSpaceType(TvMsg msg, TvSpaceType spaceType);
}

// The grid of messages that carry samples.

extern "C"
{
    /// Samples along x: columns of a surface or image, points of a profile. 0 for other messages.
    MU_PLATFORM_EXPORT std::size_t TvDataMsg_Width(TvDataMsg msg);

    /// Samples along y: rows of a surface or image, 1 for a profile. 0 for other messages.
    MU_PLATFORM_EXPORT std::size_t TvDataMsg_Length(TvDataMsg msg);

    /// World position of pixel 0 on each axis, in mm; 0 in a new message and for other messages.
    MU_PLATFORM_EXPORT zPoint3d64f TvDataMsg_Offset(TvDataMsg msg);

    /// World size of one pixel step on each axis, in mm; 1 in a new message and for other messages.
    MU_PLATFORM_EXPORT zPoint3d64f TvDataMsg_Scale(TvDataMsg msg);

    /// The sample at a place, where the rest of its row follows: a point of a surface or profile, a pixel of an image.
    /// It belongs to the message and is valid while that lives. Null outside and for other messages.
    MU_PLATFORM_EXPORT void* TvDataMsg_Ranges(TvDataMsg msg, std::size_t row, std::size_t column);

    /// The array of the samples, `zArray2` of a surface or image, `zArray1` of a profile, not shared for the caller;
    /// `index` is 0. Null for another index and for other messages.
    MU_PLATFORM_EXPORT zObject TvDataMsg_RangeArray(TvDataMsg msg, std::size_t index);
}
