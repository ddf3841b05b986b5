#include "Table.h"

TA_EXPORT_TOOLS(CompleteTool("First"), CompleteTool(nullptr))
