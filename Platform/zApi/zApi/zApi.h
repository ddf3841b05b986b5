#pragma once

// Everything of the base library, for users in a hurry.

#include <zApi/zAlloc.h>
#include <zApi/zArray1.h>
#include <zApi/zArray2.h>
#include <zApi/zArrayList.h>
#include <zApi/zDat6.h>
#include <zApi/zDirectory.h>
#include <zApi/zFault.h>
#include <zApi/zFile.h>
#include <zApi/zImage.h>
#include <zApi/zList.h>
#include <zApi/zLog.h>
#include <zApi/zMem.h>
#include <zApi/zMemory.h>
#include <zApi/zObject.h>
#include <zApi/zPath.h>
#include <zApi/zQueue.h>
#include <zApi/zSaturate.h>
#include <zApi/zSave6.h>
#include <zApi/zSerializer.h>
#include <zApi/zStream.h>
#include <zApi/zString.h>
#include <zApi/zThreadPool.h>
#include <zApi/zType.h>
#include <zApi/zTypeTable.h>
#include <zApi/zTypes.h>
#include <zApi/zVersion.h>
