#pragma once

#include <zApi/zObject.h>

zDECLARE_TYPE(zDataTree);

// A tree of named items, each with a data object or none. Items are known by their number, from 1 in the order in which
// they were added; 0 is no item. An item stays in the tree as long as the tree lives.

using zDataTree = void*;
using zDataTreeItem = std::size_t;

extern "C"
{
    /// Makes a tree without items. -999 if `tree` is null, -998 if there is no memory.
    MU_PLATFORM_EXPORT zStatus zDataTree_Construct(zDataTree* tree, zAlloc alloc);

    /// Adds an item without data as the last child of `parent`, or, if that is 0, as the root, and stores its number in
    /// `*item`, which may be null. A failing call leaves the tree as it was.
    /// -997 if `tree` is no `zDataTree` or `parent` none of its items, -999 if `name` is null, -987 if there is a root
    /// or the parent has a child of that name, -998 if there is no memory.
    MU_PLATFORM_EXPORT zStatus zDataTree_Add(zDataTree tree, zDataTreeItem parent, const char* name,
                                             zDataTreeItem* item);

    /// The root, 0 if the tree is empty or `tree` is no `zDataTree`.
    MU_PLATFORM_EXPORT zDataTreeItem zDataTree_Root(zDataTree tree);

    /// Stores the data of the child of that name in `*data`: null if it has none, else valid until it is replaced.
    /// -997 if `tree` is no `zDataTree` or `parent` none of its items, -999 if a pointer is null or there is no such
    /// child.
    MU_PLATFORM_EXPORT zStatus zDataTree_ChildData(zDataTree tree, zDataTreeItem parent, const char* name,
                                                   zObject* data);

    /// Gives the child of that name `data`, which the tree shares, in place of what it had; null takes it away. A
    /// missing child is added. A failing call leaves the tree as it was.
    /// -997 if `tree` is no `zDataTree` or `parent` none of its items, -999 if `name` is null, -998 without memory.
    MU_PLATFORM_EXPORT zStatus zDataTree_PutChildData(zDataTree tree, zDataTreeItem parent, const char* name,
                                                      zObject data);

    /// The number of children of an item; 0 if there is no such item.
    MU_PLATFORM_EXPORT std::size_t zDataTree_ChildCount(zDataTree tree, zDataTreeItem parent);

    /// The child at `index`, in the order in which they were added; 0 past the end. Takes `index` steps.
    MU_PLATFORM_EXPORT zDataTreeItem zDataTree_ChildAt(zDataTree tree, zDataTreeItem parent, std::size_t index);

    /// The name of an item, valid while the tree lives; null if there is no such item.
    MU_PLATFORM_EXPORT const char* zDataTree_Name(zDataTree tree, zDataTreeItem item);

    /// The data of an item, null if it has none or there is no such item; valid until it is replaced.
    MU_PLATFORM_EXPORT zObject zDataTree_Data(zDataTree tree, zDataTreeItem item);
}
