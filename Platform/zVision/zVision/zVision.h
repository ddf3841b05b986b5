#pragma once

// Everything of this library, for users in a hurry.

#include <zVision/zDegrees.h>
#include <zVision/zM3dTransform2d.h>
#include <zVision/zM3dTransform3d.h>
#include <zVision/zS3dMath.h>
