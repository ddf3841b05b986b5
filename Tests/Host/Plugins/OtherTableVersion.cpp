#include "Table.h"

// What stands behind the version is of another layout then: reading it would crash.
TEST_ENTRY(static constexpr TaPluginTable table = {77, nullptr, 12345, nullptr}; return &table;)
