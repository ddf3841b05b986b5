#pragma once

#include <TaApi/Object.h>
