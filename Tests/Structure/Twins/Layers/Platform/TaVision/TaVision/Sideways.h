#pragma once

#include <TaCommon/IMetricsKeeper.h>
#include <zApi/zTypes.h>
