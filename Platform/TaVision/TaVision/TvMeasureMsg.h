#pragma once

#include <TaVision/TvMsg.h>

/// A measurement: a value, the decision on it, and the place of its label if it has one. The operations give -997 if
/// `msg` is no measurement.
zDECLARE_TYPE(TvMeasureMsg);

using TvMeasureMsg = void*;

extern "C"
{
    /// Makes a measurement without value and label position, whose decision is true. It has a stamp for each of
    /// `count` frames, one at least; `sourceId` tells who measured. One allocation for one frame.
    /// -999 if `msg` is null, -997 beyond `zMSGSET_MAX_STAMPS`, -998 if there is no memory.
    MU_PLATFORM_EXPORT zStatus TvMeasureMsg_Construct(TvMeasureMsg* msg, std::size_t count, z32u sourceId,
                                                      zAlloc alloc);

    /// The id that the measurement was made with; 0 if `msg` is no measurement.
    MU_PLATFORM_EXPORT z32u TvMeasureMsg_SourceId(TvMeasureMsg msg);

    /// The value; `zNULL_64F` if none was set or `msg` is no measurement.
    MU_PLATFORM_EXPORT z64f TvMeasureMsg_Value(TvMeasureMsg msg);

    /// Sets the value.
    MU_PLATFORM_EXPORT zStatus TvMeasureMsg_SetValue(TvMeasureMsg msg, z64f value);

    /// The decision: true if the value passed, false if it failed or `msg` is no measurement.
    MU_PLATFORM_EXPORT bool TvMeasureMsg_Status(TvMeasureMsg msg);

    /// Sets the decision.
    MU_PLATFORM_EXPORT zStatus TvMeasureMsg_SetStatus(TvMeasureMsg msg, bool passed);

    /// True if the place of the label is known.
    MU_PLATFORM_EXPORT bool TvMeasureMsg_HasLabelPosition(TvMeasureMsg msg);

    /// The place of the label in mm; three times `zNULL_64F` if it is not known.
    MU_PLATFORM_EXPORT zPoint3d64f TvMeasureMsg_LabelPosition(TvMeasureMsg msg);

    /// Sets the place of the label; an `x` of `zNULL_64F` makes it unknown. On a `TvNullMsg`, which stands for a
    /// measurement without value, it succeeds and changes nothing.
    MU_PLATFORM_EXPORT zStatus TvMeasureMsg_SetLabelPosition(TvMeasureMsg msg, z64f x, z64f y, z64f z);

    /// As `zMsgSet_SetStampAt`, for a measurement or the `TvNullMsg` that stands for it; -997 for other messages.
    MU_PLATFORM_EXPORT zStatus TvMeasureMsg_SetStampAt(TvMeasureMsg msg, std::size_t index, const zStamp* stamp);
}
