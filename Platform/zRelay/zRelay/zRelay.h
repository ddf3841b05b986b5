#pragma once

// Everything of this library, for users in a hurry.

#include <zRelay/zMsgSet.h>
#include <zRelay/zStamp.h>
