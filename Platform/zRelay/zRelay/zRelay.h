#pragma once

// Everything of this library, for users in a hurry.

#include <zRelay/zDataTree.h>
#include <zRelay/zMsgSet.h>
#include <zRelay/zRelayTypes.h>
#include <zRelay/zStamp.h>
