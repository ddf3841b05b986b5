#pragma once

// Everything of this library, for users in a hurry.

#include <TaVision/TvDataMsg.h>
#include <TaVision/TvFoRTransform.h>
#include <TaVision/TvGenericMsg.h>
#include <TaVision/TvMeasureMsg.h>
#include <TaVision/TvMsg.h>
#include <TaVision/TvNullMsg.h>
#include <TaVision/TvPixelFormat.h>
#include <TaVision/TvProfileMsg.h>
#include <TaVision/TvSurfaceMsg.h>
