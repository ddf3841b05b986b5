#pragma once

#include <zApi/zExport.h>

namespace Ta::Properties
{
class Leaf;
class Structure;

/// Walks a tree that it may change. A visitor goes down into the children of a structure by itself.
class MU_PLATFORM_EXPORT INodeVisitor
{
public:
    INodeVisitor() = default;
    INodeVisitor(const INodeVisitor&) = default;
    INodeVisitor& operator=(const INodeVisitor&) = default;
    virtual ~INodeVisitor();
    virtual void Visit(Structure& structure) = 0;
    virtual void Visit(Leaf& leaf) = 0;
};

/// Walks a tree that it only reads.
class MU_PLATFORM_EXPORT INodeVisitorConst
{
public:
    INodeVisitorConst() = default;
    INodeVisitorConst(const INodeVisitorConst&) = default;
    INodeVisitorConst& operator=(const INodeVisitorConst&) = default;
    virtual ~INodeVisitorConst();
    virtual void Visit(const Structure& structure) = 0;
    virtual void Visit(const Leaf& leaf) = 0;
};
} // namespace Ta::Properties
