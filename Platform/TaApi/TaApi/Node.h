#pragma once

#include <zApi/zExport.h>

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace Ta::Properties
{
class INodeVisitor;
class INodeVisitorConst;
class Structure;

/// A node in a tree of properties: a structure or a leaf. It has a name once it stands in a structure, and a schema,
/// which is a list of named nodes that say how the value is to be shown and what it may be.
///
/// Nodes do not own their children. A node that ends signs off from where it is registered, and a structure that ends
/// lets go of its children, so the two may end in either order.
/// Not guarded: the calls on one tool never overlap.
class MU_PLATFORM_EXPORT Node
{
public:
    Node() = default;
    explicit Node(std::string name);
    Node(const Node&) = delete;
    Node& operator=(const Node&) = delete;
    virtual ~Node();

    /// Takes the values of `other` over as they are, without validation; the schema stays.
    /// @throws Ta::Exception -997 if `other` holds another kind of value
    virtual void CopyValues(const Node& other) = 0;

    /// A write-only node is left out when values are written to a file.
    virtual void SetWriteOnly(bool isWriteOnly);

    virtual void Accept(INodeVisitorConst& visitor) const = 0;
    virtual void Accept(INodeVisitor& visitor) = 0;

    /// The key in its structure, or the name it was constructed with; empty if it has none.
    [[nodiscard]] const std::string& Name() const noexcept
    {
        return ownName;
    }

    /// The name for messages: "<unnamed>" if there is none.
    [[nodiscard]] const char* DisplayName() const noexcept;

    /// The keys from below the root down to this node: "Region/Width". Empty for a root.
    [[nodiscard]] std::string Path() const;

    /// The structure in which it is registered, or null.
    [[nodiscard]] Structure* Parent() const noexcept
    {
        return parentStructure;
    }

    [[nodiscard]] bool IsWriteOnly() const noexcept
    {
        return hiddenFromFiles;
    }

    /// Adds an entry to the schema; `entry` stays the caller's and takes `key` as its name.
    /// @throws Ta::Exception -987 if the schema has an entry of that name, or `entry` is registered already
    void RegisterSchema(const std::string& key, Node& entry);

    /// The same; with `replace` an entry of that name makes room.
    void RegisterSchema(const std::string& key, Node& entry, bool replace);

    /// Adds an entry that the schema owns. @throws Ta::Exception -987 as above
    Node& AdoptSchema(const std::string& key, std::unique_ptr<Node> entry);

    /// Takes an entry out. @throws Ta::Exception -999 if there is none of that name
    void DeregisterSchema(const std::string& key);

    /// Takes the schema of `other` over: the values of entries that both have, and copies of those that only `other`
    /// has. What only this node has stays.
    /// @throws Ta::Exception -997 if an entry holds another kind of value here, or is no leaf and missing here
    void CopySchema(const Node& other);

    [[nodiscard]] std::size_t SchemaCount() const noexcept
    {
        return schemaEntries.size();
    }

    /// @throws Ta::Exception -997 if `index` is not below `SchemaCount()`
    [[nodiscard]] Node& SchemaAt(std::size_t index) const;

    /// The schema entry of that name, or null. It stays valid while the entry is registered.
    [[nodiscard]] Node* FindSchema(std::string_view key) const noexcept;

protected:
    void SetName(const std::string& newName)
    {
        ownName = newName;
    }

private:
    friend class Structure;

    struct SchemaEntry
    {
        Node* node;
        std::unique_ptr<Node> owned; ///< null if the entry is someone else's
    };

    [[nodiscard]] bool IsRegistered() const noexcept
    {
        return parentStructure != nullptr || describedNode != nullptr;
    }

    void InsertSchema(const std::string& key, Node& entry, std::unique_ptr<Node> owned);
    void ForgetSchema(const Node& entry) noexcept;

    std::string ownName;
    Structure* parentStructure = nullptr;
    Node* describedNode = nullptr; ///< the node in whose schema this one stands
    std::vector<SchemaEntry> schemaEntries;
    bool hiddenFromFiles = false;
};
} // namespace Ta::Properties
