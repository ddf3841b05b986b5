#include "Table.h"

TA_EXPORT_TOOLS(CompleteTool("Twin"), CompleteTool("Other"), CompleteTool("Twin"))
