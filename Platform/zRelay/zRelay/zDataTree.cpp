#include <zRelay/zDataTree.h>

#include <zApi/zArrayList.h>
#include <zApi/zDat6.h>
#include <zApi/zObjectType.h>
#include <zApi/zString.h>

namespace
{
struct Item
{
    zString name;
    zObject data; ///< holds a reference; null if there is none
    zDataTreeItem parent;
    zDataTreeItem firstChild;
    zDataTreeItem lastChild;
    zDataTreeItem sibling; ///< the next one
    std::size_t childCount;
};

// All items stand in one list, so that making an end of a deep tree needs no recursion.
struct Tree : zObjectClass
{
    zArrayList items;

    [[nodiscard]] std::size_t Count() const
    {
        return zArrayList_Count(items);
    }

    /// Null if there is no such item.
    [[nodiscard]] Item* At(zDataTreeItem item) const
    {
        return item == 0 ? nullptr : static_cast<Item*>(zArrayList_At(items, item - 1));
    }
};

Tree* As(zObject tree)
{
    return zObjectType_Cast<Tree>(tree, zTypeOf(zDataTree));
}

Item* ItemOf(zObject tree, zDataTreeItem item)
{
    const Tree* const object = As(tree);
    return object == nullptr ? nullptr : object->At(item);
}

void End(Item& item) noexcept
{
    zObjectType_Put(&item.data, nullptr);
    zObjectType_Put(&item.name, nullptr);
}

void Release(zObject object) noexcept
{
    auto* const tree = static_cast<Tree*>(object);
    for (zDataTreeItem item = tree->Count(); item > 0; --item)
    {
        End(*tree->At(item));
    }
    zObjectType_Put(&tree->items, nullptr);
}

zStatus Construct(zObject* out, zAlloc alloc)
{
    Tree* tree = nullptr;
    zTRY(zObjectType_New(zTypeOf(zDataTree), alloc, &tree));
    return zObjectType_Finish(tree, zArrayList_Construct(&tree->items, zBytes_GetType(sizeof(Item)), 0, alloc), out);
}

/// Makes the last item of the list a child of its parent.
void Link(const Tree& tree)
{
    const zDataTreeItem added = tree.Count();
    Item* const parent = tree.At(tree.At(added)->parent);
    if (parent == nullptr)
    {
        return;
    }
    Item* const before = tree.At(parent->lastChild);
    (before == nullptr ? parent->firstChild : before->sibling) = added;
    parent->lastChild = added;
    ++parent->childCount;
}

/// Appends an item, whose references the tree takes over if that succeeds and which end if not.
zStatus Append(const Tree& tree, Item item, zStatus made)
{
    const zStatus status = made == zOK ? zArrayList_Add(tree.items, &item) : made;
    if (status != zOK)
    {
        End(item);
        return status;
    }
    Link(tree);
    return zOK;
}

zDataTreeItem FindChild(const Tree& tree, const Item& parent, const char* name)
{
    zDataTreeItem child = parent.firstChild;
    while (child != 0 && zStrCompare(zString_Chars(tree.At(child)->name), name) != 0)
    {
        child = tree.At(child)->sibling;
    }
    return child;
}

/// Takes over the reference of `data`, also if it fails.
zStatus Add(const Tree& tree, zDataTreeItem parent, const char* name, zObject data)
{
    Item item{};
    item.parent = parent;
    item.data = data;
    const zStatus named = zString_Construct(&item.name, name, tree.alloc);
    return Append(tree, item, named);
}

zStatus CheckFree(const Tree& tree, zDataTreeItem parent, const char* name)
{
    const Item* const above = tree.At(parent);
    const bool isTaken = above == nullptr ? tree.Count() > 0 : FindChild(tree, *above, name) != 0;
    return isTaken ? zERROR_ALREADY_TAKEN : zOK;
}

zStatus CloneItem(const Tree& target, const Item& source)
{
    Item item{};
    item.parent = source.parent;
    zStatus status = xzObject_CloneImpl(&item.name, source.name, target.alloc);
    status = status == zOK ? xzObject_CloneImpl(&item.data, source.data, target.alloc) : status;
    return Append(target, item, status);
}

zStatus CloneItems(const Tree& target, const Tree& source)
{
    for (zDataTreeItem item = 1; item <= source.Count(); ++item)
    {
        zTRY(CloneItem(target, *source.At(item)));
    }
    return zOK;
}

zStatus Clone(zObject object, zAlloc alloc, zObject* clone)
{
    zObject made = nullptr;
    zTRY(Construct(&made, alloc));
    auto* const target = static_cast<Tree*>(made);
    return zObjectType_Finish(target, CloneItems(*target, *static_cast<const Tree*>(object)), clone);
}

zStatus Save(zObject object, zDat6Writer* writer)
{
    const auto* const tree = static_cast<const Tree*>(object);
    zTRY(zDat6_WriteNumber(writer, tree->Count()));
    for (zDataTreeItem number = 1; number <= tree->Count(); ++number)
    {
        const Item& item = *tree->At(number);
        zTRY(zDat6_WriteNumber(writer, item.parent));
        zTRY(zDat6_WriteObject(writer, item.name));
        zTRY(zDat6_WriteObject(writer, item.data));
    }
    return zOK;
}

zStatus LoadItem(zDat6Reader* reader, const Tree& tree)
{
    Item item{};
    z64u parent = 0;
    zTRY(zDat6_ReadNumber(reader, tree.Count(), &parent));
    // The first item is the root, and the only one without a parent.
    if ((parent == 0) != (tree.Count() == 0))
    {
        return zERROR_FORMAT;
    }
    item.parent = parent;
    zStatus status = zDat6_ReadObject(reader, zTypeOf(zString), tree.alloc, &item.name);
    status = status == zOK && item.name == nullptr ? zERROR_FORMAT : status;
    status = status == zOK ? zDat6_ReadObject(reader, zTypeOf(zObject), tree.alloc, &item.data) : status;
    return Append(tree, item, status);
}

zStatus LoadItems(zDat6Reader* reader, const Tree& tree)
{
    // Parent, name and data take 8 bytes each at least. The list grows as items come.
    std::size_t count = 0;
    zTRY(zDat6_ReadCount(reader, 3 * sizeof(z64u), &count));
    for (std::size_t i = 0; i < count; ++i)
    {
        zTRY(LoadItem(reader, tree));
    }
    return zOK;
}

zStatus Load(zDat6Reader* reader, zType /*type*/, zAlloc alloc, zObject* object)
{
    zObject made = nullptr;
    zTRY(Construct(&made, alloc));
    auto* const tree = static_cast<Tree*>(made);
    return zObjectType_Finish(tree, LoadItems(reader, *tree), object);
}

constexpr zObjectOps treeOps = {Release, Clone, Save, Load};
} // namespace

zDEFINE_OBJECT_TYPE(zDataTree, zObject, &treeOps);

zStatus zDataTree_Construct(zDataTree* tree, zAlloc alloc)
{
    zFAULT_GATE();
    return tree == nullptr ? zERROR_MISSING : Construct(tree, alloc);
}

zStatus zDataTree_Add(zDataTree tree, zDataTreeItem parent, const char* name, zDataTreeItem* item)
{
    zFAULT_GATE();
    const Tree* const object = As(tree);
    if (object == nullptr || parent > object->Count())
    {
        return zERROR_PARAMETER;
    }
    if (name == nullptr)
    {
        return zERROR_MISSING;
    }
    zTRY(CheckFree(*object, parent, name));
    zTRY(Add(*object, parent, name, nullptr));
    if (item != nullptr)
    {
        *item = object->Count();
    }
    return zOK;
}

zDataTreeItem zDataTree_Root(zDataTree tree)
{
    return ItemOf(tree, 1) == nullptr ? 0 : 1;
}

zStatus zDataTree_ChildData(zDataTree tree, zDataTreeItem parent, const char* name, zObject* data)
{
    zFAULT_GATE();
    const Item* const above = ItemOf(tree, parent);
    if (above == nullptr)
    {
        return zERROR_PARAMETER;
    }
    const zDataTreeItem child = name == nullptr || data == nullptr ? 0 : FindChild(*As(tree), *above, name);
    if (child == 0)
    {
        return zERROR_MISSING;
    }
    *data = zDataTree_Data(tree, child);
    return zOK;
}

zStatus zDataTree_PutChildData(zDataTree tree, zDataTreeItem parent, const char* name, zObject data)
{
    zFAULT_GATE();
    const Item* const above = ItemOf(tree, parent);
    if (above == nullptr)
    {
        return zERROR_PARAMETER;
    }
    if (name == nullptr)
    {
        return zERROR_MISSING;
    }
    if (data != nullptr)
    {
        zTRY(xzObject_ShareImpl(data));
    }
    const zDataTreeItem child = FindChild(*As(tree), *above, name);
    if (child == 0)
    {
        return Add(*As(tree), parent, name, data);
    }
    zObjectType_Put(&ItemOf(tree, child)->data, data);
    return zOK;
}

std::size_t zDataTree_ChildCount(zDataTree tree, zDataTreeItem parent)
{
    const Item* const item = ItemOf(tree, parent);
    return item == nullptr ? 0 : item->childCount;
}

zDataTreeItem zDataTree_ChildAt(zDataTree tree, zDataTreeItem parent, std::size_t index)
{
    if (index >= zDataTree_ChildCount(tree, parent))
    {
        return 0;
    }
    zDataTreeItem child = ItemOf(tree, parent)->firstChild;
    for (; index > 0; --index)
    {
        child = ItemOf(tree, child)->sibling;
    }
    return child;
}

const char* zDataTree_Name(zDataTree tree, zDataTreeItem item)
{
    const Item* const object = ItemOf(tree, item);
    return object == nullptr ? nullptr : zString_Chars(object->name);
}

zObject zDataTree_Data(zDataTree tree, zDataTreeItem item)
{
    const Item* const object = ItemOf(tree, item);
    return object == nullptr ? nullptr : object->data;
}
