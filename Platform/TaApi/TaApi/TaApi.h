#pragma once

#include <TaApi/Event.h>
#include <TaApi/Exception.h>
#include <TaApi/Logging.h>
#include <TaApi/Object.h>
#include <TaApi/Params.h>
#include <TaApi/Properties.h>
#include <TaApi/Raise.h>
