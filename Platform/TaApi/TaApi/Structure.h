#pragma once

#include <TaApi/Node.h>

namespace Ta::Properties
{
/// A named list of child nodes, in the order in which they were registered. The children are someone else's, most often
/// members of the tool that also holds the structure.
class MU_PLATFORM_EXPORT Structure : public Node
{
public:
    Structure() = default;
    explicit Structure(std::string name);
    ~Structure() override;

    /// Copies the values of the children that both have, by name; others stay.
    /// @throws Ta::Exception -997 if `other` is no structure, or a child holds another kind of value
    void CopyValues(const Node& other) override;
    void Accept(INodeVisitorConst& visitor) const override;
    void Accept(INodeVisitor& visitor) override;

    [[nodiscard]] std::size_t Count() const noexcept
    {
        return childNodes.size();
    }

    /// @throws Ta::Exception -997 if `index` is not below `Count()`
    [[nodiscard]] Node& At(std::size_t index) const;

    /// The child of that name, or null.
    [[nodiscard]] Node* Find(std::string_view key) const noexcept;

    /// Adds a child, which takes `key` as its name.
    /// @throws Ta::Exception -987 if a child has that name, or `child` is registered already; -997 if `key` is empty
    void Register(const std::string& key, Node& child);

    /// Takes a child out; it keeps its name. @throws Ta::Exception -999 if there is none of that name
    void Deregister(const std::string& key);

private:
    friend class Node;

    void Forget(const Node& child) noexcept;

    std::vector<Node*> childNodes;
};
} // namespace Ta::Properties
