#pragma once

#include <zApi/zTypes.h>

/// When and where a frame was taken. A new stamp is all zero.
struct zStamp
{
    z64u source;   ///< id of the sensor or of the node that made the frame
    z64u sequence; ///< counts the frames of a run
    z64u time;     ///< microseconds since the sensor was started
    z64s encoder;  ///< ticks of the motion encoder
};
