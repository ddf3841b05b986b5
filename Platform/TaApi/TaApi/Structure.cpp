#include <TaApi/Structure.h>

#include <TaApi/NodeVisitor.h>
#include <TaApi/Raise.h>

#include <algorithm>
#include <utility>

namespace Ta::Properties
{
Structure::Structure(std::string newName)
    : Node(std::move(newName))
{
}

Structure::~Structure()
{
    for (Node* child : childNodes)
    {
        child->parentStructure = nullptr;
    }
}

void Structure::CopyValues(const Node& other)
{
    const auto* source = dynamic_cast<const Structure*>(&other);
    if (source == nullptr)
    {
        MU_FAIL(zERROR_PARAMETER, "Values of %s cannot be copied to %s: it is no structure.", other.DisplayName(),
                DisplayName());
    }
    for (Node* child : childNodes)
    {
        if (const Node* twin = source->Find(child->ownName))
        {
            child->CopyValues(*twin);
        }
    }
}

void Structure::Accept(INodeVisitorConst& visitor) const
{
    visitor.Visit(*this);
}

void Structure::Accept(INodeVisitor& visitor)
{
    visitor.Visit(*this);
}

Node& Structure::At(std::size_t index) const
{
    if (index >= childNodes.size())
    {
        MU_FAIL(zERROR_PARAMETER, "%s has no child %zu: it has %zu.", DisplayName(), index, childNodes.size());
    }
    return *childNodes[index];
}

Node* Structure::Find(std::string_view key) const noexcept
{
    const auto found = std::ranges::find_if(childNodes, [key](const Node* child) { return child->ownName == key; });
    return found == childNodes.end() ? nullptr : *found;
}

void Structure::Register(const std::string& key, Node& child)
{
    if (key.empty())
    {
        MU_FAIL(zERROR_PARAMETER, "A child of %s needs a key.", DisplayName());
    }
    if (Find(key) != nullptr)
    {
        MU_FAIL(zERROR_ALREADY_TAKEN, "Key '%s' is already registered in %s.", key.c_str(), DisplayName());
    }
    // A circle would let every walk over the tree run for ever.
    const Node* root = this;
    while (root->parentStructure != nullptr)
    {
        root = root->parentStructure;
    }
    if (child.IsRegistered() || &child == root)
    {
        MU_FAIL(zERROR_ALREADY_TAKEN, "%s cannot be registered in %s: it is already part of a tree.", key.c_str(),
                DisplayName());
    }
    childNodes.push_back(&child);
    child.ownName = key;
    child.parentStructure = this;
}

void Structure::Deregister(const std::string& key)
{
    Node* child = Find(key);
    if (child == nullptr)
    {
        MU_FAIL(zERROR_MISSING, "%s has no child '%s'.", DisplayName(), key.c_str());
    }
    child->parentStructure = nullptr;
    Forget(*child);
}

void Structure::Forget(const Node& child) noexcept
{
    std::erase(childNodes, &child);
}
} // namespace Ta::Properties
