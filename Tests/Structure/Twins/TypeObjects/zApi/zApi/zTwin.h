#pragma once

#include <zApi/zType.h>

zDECLARE_TYPE(z8u);
zDECLARE_TYPE(zMissing);
