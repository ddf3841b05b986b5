#include "Table.h"

TEST_ENTRY(static constexpr TaPluginTable table = {TaPLUGIN_TABLE_VERSION, TaPLUGIN_ABI_TAG, 0, nullptr};
           return &table;)
