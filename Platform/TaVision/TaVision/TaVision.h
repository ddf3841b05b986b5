#pragma once

// Everything of this library, for users in a hurry.

#include <TaVision/TvCircleFeatureMsg.h>
#include <TaVision/TvDataMsg.h>
#include <TaVision/TvFoRTransform.h>
#include <TaVision/TvGenericMsg.h>
#include <TaVision/TvImageMsg.h>
#include <TaVision/TvLineFeatureMsg.h>
#include <TaVision/TvMeasureMsg.h>
#include <TaVision/TvMsg.h>
#include <TaVision/TvNullMsg.h>
#include <TaVision/TvPixelFormat.h>
#include <TaVision/TvPlaneFeatureMsg.h>
#include <TaVision/TvPointFeatureMsg.h>
#include <TaVision/TvProfileMsg.h>
#include <TaVision/TvRenderingMsg.h>
#include <TaVision/TvSurfaceMsg.h>
#include <TaVision/TvSurfaceTransform.h>
#include <TaVision/TvTypes.h>
