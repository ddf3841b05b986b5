#include "Table.h"

TEST_ENTRY(return nullptr;)
