#pragma once

// Everything of this library, for users in a hurry.

#include <MuVision/AlphanumSort.h>
#include <MuVision/Anchor.h>
#include <MuVision/ArrayFill.h>
#include <MuVision/Features.h>
#include <MuVision/Masks.h>
#include <MuVision/Null.h>
#include <MuVision/Pixels.h>
#include <MuVision/Points.h>
#include <MuVision/RefFrame.h>
#include <MuVision/RegionPixel.h>
#include <MuVision/Regions.h>
#include <MuVision/Sectors.h>
#include <MuVision/ValidVector.h>
