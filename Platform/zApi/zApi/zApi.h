#pragma once

// Everything of the base library, for users in a hurry.

#include <zApi/zAlloc.h>
#include <zApi/zArray1.h>
#include <zApi/zArray2.h>
#include <zApi/zArrayList.h>
#include <zApi/zFault.h>
#include <zApi/zLog.h>
#include <zApi/zMem.h>
#include <zApi/zObject.h>
#include <zApi/zString.h>
#include <zApi/zType.h>
#include <zApi/zTypes.h>
#include <zApi/zVersion.h>
