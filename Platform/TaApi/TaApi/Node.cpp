#include <TaApi/Node.h>

#include <TaApi/PropertiesValue.h>
#include <TaApi/Raise.h>
#include <TaApi/Structure.h>

#include <algorithm>
#include <utility>

namespace Ta::Properties
{
Node::Node(std::string newName)
    : ownName(std::move(newName))
{
}

Node::~Node()
{
    if (parentStructure != nullptr)
    {
        parentStructure->Forget(*this);
    }
    if (describedNode != nullptr)
    {
        describedNode->ForgetSchema(*this);
    }
    for (const SchemaEntry& entry : schemaEntries)
    {
        entry.node->describedNode = nullptr;
    }
}

void Node::SetWriteOnly(bool isWriteOnly)
{
    hiddenFromFiles = isWriteOnly;
}

const char* Node::DisplayName() const noexcept
{
    return ownName.empty() ? "<unnamed>" : ownName.c_str();
}

std::string Node::Path() const
{
    if (parentStructure == nullptr)
    {
        return {};
    }
    std::string path = ownName;
    for (const Node* above = parentStructure; above->parentStructure != nullptr; above = above->parentStructure)
    {
        path = above->ownName + "/" + path;
    }
    return path;
}

void Node::InsertSchema(const std::string& key, Node& entry, std::unique_ptr<Node> owned)
{
    schemaEntries.push_back({&entry, std::move(owned)});
    entry.ownName = key;
    entry.describedNode = this;
}

void Node::RegisterSchema(const std::string& key, Node& entry)
{
    if (entry.IsRegistered() || FindSchema(key) != nullptr)
    {
        MU_FAIL(zERROR_ALREADY_TAKEN, "Schema entry '%s' cannot be registered for %s: the name or the entry is taken.",
                key.c_str(), DisplayName());
    }
    InsertSchema(key, entry, nullptr);
}

void Node::RegisterSchema(const std::string& key, Node& entry, bool replace)
{
    if (replace && !entry.IsRegistered() && FindSchema(key) != nullptr)
    {
        DeregisterSchema(key);
    }
    RegisterSchema(key, entry);
}

Node& Node::AdoptSchema(const std::string& key, std::unique_ptr<Node> entry)
{
    if (entry == nullptr)
    {
        MU_FAIL(zERROR_MISSING, "Schema entry '%s' of %s is null.", key.c_str(), DisplayName());
    }
    if (entry->IsRegistered() || FindSchema(key) != nullptr)
    {
        MU_FAIL(zERROR_ALREADY_TAKEN, "Schema entry '%s' cannot be registered for %s: the name or the entry is taken.",
                key.c_str(), DisplayName());
    }
    Node& adopted = *entry;
    InsertSchema(key, adopted, std::move(entry));
    return adopted;
}

void Node::DeregisterSchema(const std::string& key)
{
    Node* entry = FindSchema(key);
    if (entry == nullptr)
    {
        MU_FAIL(zERROR_MISSING, "%s has no schema entry '%s'.", DisplayName(), key.c_str());
    }
    entry->describedNode = nullptr;
    ForgetSchema(*entry);
}

void Node::CopySchema(const Node& other)
{
    for (const SchemaEntry& source : other.schemaEntries)
    {
        if (Node* present = FindSchema(source.node->ownName))
        {
            present->CopyValues(*source.node);
            continue;
        }
        const auto* leaf = dynamic_cast<const Leaf*>(source.node);
        if (leaf == nullptr)
        {
            MU_FAIL(zERROR_PARAMETER, "Schema entry '%s' of %s is no value and cannot be copied to %s.",
                    source.node->DisplayName(), other.DisplayName(), DisplayName());
        }
        AdoptSchema(source.node->ownName, leaf->Clone());
    }
}

Node& Node::SchemaAt(std::size_t index) const
{
    if (index >= schemaEntries.size())
    {
        MU_FAIL(zERROR_PARAMETER, "%s has no schema entry %zu: it has %zu.", DisplayName(), index, SchemaCount());
    }
    return *schemaEntries[index].node;
}

Node* Node::FindSchema(std::string_view key) const noexcept
{
    const auto isNamed = [key](const SchemaEntry& entry) { return entry.node->ownName == key; };
    const auto found = std::ranges::find_if(schemaEntries, isNamed);
    return found == schemaEntries.end() ? nullptr : found->node;
}

void Node::ForgetSchema(const Node& entry) noexcept
{
    std::erase_if(schemaEntries, [&entry](const SchemaEntry& candidate) { return candidate.node == &entry; });
}
} // namespace Ta::Properties
