#include "Table.h"

#include <stdexcept>

TEST_ENTRY(throw std::runtime_error("no licence for this machine");)
