#include "Table.h"

TEST_ENTRY(static constexpr TaPluginTable table = {TaPLUGIN_TABLE_VERSION, "tool interface 0, json 2.0.0", 12345,
                                                   nullptr};
           return &table;)
