#include <TaApi/NodeVisitor.h>

namespace Ta::Properties
{
INodeVisitor::~INodeVisitor() = default;
INodeVisitorConst::~INodeVisitorConst() = default;
} // namespace Ta::Properties
