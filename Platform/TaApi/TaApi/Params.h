#pragma once

#include <TaApi/ParamsBase.h>
#include <TaApi/ParamsEnum.h>
#include <TaApi/ParamsGroup.h>
#include <TaApi/ParamsRegions.h>
#include <TaApi/ParamsValue.h>
