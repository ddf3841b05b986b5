#include <Support/FaultWalk.h>

#include <TaApi/Object.h>
#include <zApi/zString.h>
#include <zRelay/zRelay.h>

#include <gtest/gtest.h>
#include <string>

using namespace Support;

namespace
{
Ta::Object<void*> Tree(zAlloc alloc = nullptr)
{
    zDataTree tree = nullptr;
    EXPECT_EQ(zDataTree_Construct(&tree, alloc), zOK);
    return Ta::Object<void*>(tree);
}

Ta::Object<void*> Text(const char* chars, zAlloc alloc = nullptr)
{
    zString string = nullptr;
    EXPECT_EQ(zString_Construct(&string, chars, alloc), zOK);
    return Ta::Object<void*>(string);
}

zDataTreeItem Added(zDataTree tree, zDataTreeItem parent, const char* name)
{
    zDataTreeItem item = 0;
    EXPECT_EQ(zDataTree_Add(tree, parent, name, &item), zOK);
    return item;
}

/// An item with all below it: `name=data(children)`.
std::string Shown(zDataTree tree, zDataTreeItem item)
{
    std::string shown = zDataTree_Name(tree, item);
    if (const char* const data = zString_Chars(zDataTree_Data(tree, item)); data != nullptr)
    {
        shown += std::string("=") + data;
    }
    shown += "(";
    for (std::size_t i = 0; i < zDataTree_ChildCount(tree, item); ++i)
    {
        shown += Shown(tree, zDataTree_ChildAt(tree, item, i));
    }
    return shown + ")";
}

/// `Inputs(0=first(x())1())` in a tree.
zStatus Build(zObject* tree, zAlloc alloc)
{
    zObject data = nullptr;
    zDataTreeItem root = 0;
    zStatus status = zDataTree_Construct(tree, alloc);
    status = status == zOK ? zDataTree_Add(*tree, 0, "Inputs", &root) : status;
    status = status == zOK ? zString_Construct(&data, "first", alloc) : status;
    status = status == zOK ? zDataTree_PutChildData(*tree, root, "0", data) : status;
    status = status == zOK ? zDataTree_Add(*tree, root, "1", nullptr) : status;
    status = status == zOK ? zDataTree_Add(*tree, zDataTree_ChildAt(*tree, root, 0), "x", nullptr) : status;
    static_cast<void>(xzObject_DestroyImpl(data));
    return status;
}

zStatus BuildAndClone(zAlloc alloc)
{
    zObject tree = nullptr;
    zObject clone = nullptr;
    zStatus status = Build(&tree, alloc);
    status = status == zOK ? xzObject_CloneImpl(&clone, tree, alloc) : status;
    static_cast<void>(xzObject_DestroyImpl(clone));
    static_cast<void>(xzObject_DestroyImpl(tree));
    return status;
}
} // namespace

TEST(DataTree, Is_empty_when_new)
{
    const auto tree = Tree();
    EXPECT_EQ(zDataTree_Root(tree.Get()), 0U);
    EXPECT_EQ(zDataTree_ChildCount(tree.Get(), 0), 0U);
    EXPECT_EQ(zDataTree_Name(tree.Get(), 0), nullptr);
    EXPECT_EQ(zDataTree_Name(tree.Get(), 1), nullptr);
}

TEST(DataTree, First_item_without_parent_is_the_root_and_a_second_one_is_refused)
{
    const auto tree = Tree();
    const zDataTreeItem root = Added(tree.Get(), 0, "Inputs");
    EXPECT_EQ(zDataTree_Root(tree.Get()), root);
    EXPECT_STREQ(zDataTree_Name(tree.Get(), root), "Inputs");
    EXPECT_EQ(zDataTree_Add(tree.Get(), 0, "Outputs", nullptr), zERROR_ALREADY_TAKEN);
}

TEST(DataTree, Children_keep_their_order_and_their_names_are_taken_once_per_parent)
{
    const auto tree = Tree();
    const zDataTreeItem root = Added(tree.Get(), 0, "r");
    const zDataTreeItem b = Added(tree.Get(), root, "b");
    Added(tree.Get(), root, "a");
    Added(tree.Get(), b, "b");
    Added(tree.Get(), root, "c");
    EXPECT_EQ(Shown(tree.Get(), root), "r(b(b())a()c())");
    EXPECT_EQ(zDataTree_Add(tree.Get(), root, "a", nullptr), zERROR_ALREADY_TAKEN);
    EXPECT_EQ(zDataTree_ChildAt(tree.Get(), root, 3), 0U);
}

TEST(DataTree, Data_is_shared_replaced_and_taken_away)
{
    const auto tree = Tree();
    const zDataTreeItem root = Added(tree.Get(), 0, "r");
    const auto first = Text("first");
    const auto second = Text("second");
    ASSERT_EQ(zDataTree_PutChildData(tree.Get(), root, "a", first.Get()), zOK);
    EXPECT_EQ(xzObject_ReferenceCount(first.Get()), 2);
    ASSERT_EQ(zDataTree_PutChildData(tree.Get(), root, "a", first.Get()), zOK);
    EXPECT_EQ(xzObject_ReferenceCount(first.Get()), 2);
    ASSERT_EQ(zDataTree_PutChildData(tree.Get(), root, "a", second.Get()), zOK);
    EXPECT_EQ(xzObject_ReferenceCount(first.Get()), 1);
    zObject data = nullptr;
    ASSERT_EQ(zDataTree_ChildData(tree.Get(), root, "a", &data), zOK);
    EXPECT_EQ(data, second.Get());
    EXPECT_EQ(zDataTree_ChildCount(tree.Get(), root), 1U);
    ASSERT_EQ(zDataTree_PutChildData(tree.Get(), root, "a", nullptr), zOK);
    ASSERT_EQ(zDataTree_ChildData(tree.Get(), root, "a", &data), zOK);
    EXPECT_EQ(data, nullptr);
    EXPECT_EQ(xzObject_ReferenceCount(second.Get()), 1);
}

TEST(DataTree, Missing_children_bad_items_null_names_and_other_handles_are_refused)
{
    const auto tree = Tree();
    const auto other = Text("no tree");
    const zDataTreeItem root = Added(tree.Get(), 0, "r");
    zObject data = nullptr;
    EXPECT_EQ(zDataTree_ChildData(tree.Get(), root, "a", &data), zERROR_MISSING);
    EXPECT_EQ(zDataTree_ChildData(tree.Get(), root, nullptr, &data), zERROR_MISSING);
    EXPECT_EQ(zDataTree_ChildData(tree.Get(), root, "a", nullptr), zERROR_MISSING);
    EXPECT_EQ(zDataTree_Add(tree.Get(), root, nullptr, nullptr), zERROR_MISSING);
    EXPECT_EQ(zDataTree_PutChildData(tree.Get(), root, nullptr, nullptr), zERROR_MISSING);
    EXPECT_EQ(zDataTree_Construct(nullptr, nullptr), zERROR_MISSING);
    for (const auto& [handle, item] : {std::pair{tree.Get(), root + 1}, std::pair{other.Get(), root}})
    {
        EXPECT_EQ(zDataTree_Add(handle, item, "a", nullptr), zERROR_PARAMETER);
        EXPECT_EQ(zDataTree_ChildData(handle, item, "a", &data), zERROR_PARAMETER);
        EXPECT_EQ(zDataTree_PutChildData(handle, item, "a", nullptr), zERROR_PARAMETER);
        EXPECT_EQ(zDataTree_ChildCount(handle, item), 0U);
        EXPECT_EQ(zDataTree_ChildAt(handle, item, 0), 0U);
        EXPECT_EQ(zDataTree_Data(handle, item), nullptr);
    }
    EXPECT_EQ(zDataTree_Root(other.Get()), 0U);
}

TEST(DataTree, Clone_has_items_and_data_of_its_own)
{
    zObject built = nullptr;
    ASSERT_EQ(Build(&built, nullptr), zOK);
    const Ta::Object<void*> tree(built);
    zObject cloned = nullptr;
    ASSERT_EQ(xzObject_CloneImpl(&cloned, tree.Get(), nullptr), zOK);
    const Ta::Object<void*> clone(cloned);
    ASSERT_EQ(zDataTree_PutChildData(tree.Get(), zDataTree_Root(tree.Get()), "0", nullptr), zOK);
    EXPECT_EQ(Shown(clone.Get(), zDataTree_Root(clone.Get())), "Inputs(0=first(x())1())");
    EXPECT_EQ(Shown(tree.Get(), zDataTree_Root(tree.Get())), "Inputs(0(x())1())");
}

TEST(DataTree, A_chain_of_a_hundred_thousand_items_is_cloned_and_ended)
{
    const auto tree = Tree();
    zDataTreeItem last = 0;
    for (std::size_t i = 0; i < 100'000; ++i)
    {
        ASSERT_EQ(zDataTree_Add(tree.Get(), last, "i", &last), zOK);
    }
    zObject cloned = nullptr;
    ASSERT_EQ(xzObject_CloneImpl(&cloned, tree.Get(), nullptr), zOK);
    const Ta::Object<void*> clone(cloned);
    EXPECT_EQ(zDataTree_ChildCount(clone.Get(), last - 1), 1U);
    EXPECT_EQ(zDataTree_ChildCount(clone.Get(), last), 0U);
}

TEST(DataTree, A_put_that_fails_leaves_the_tree_as_it_was)
{
    const CountingAlloc alloc;
    const auto tree = Tree(alloc.Get());
    const zDataTreeItem root = Added(tree.Get(), 0, "r");
    const auto data = Text("data");
    const std::size_t calls = WalkFaults(
        -77,
        [&] {
            const zStatus status = zDataTree_PutChildData(tree.Get(), root, "a", data.Get());
            zFault_Disarm();
            return status;
        },
        [&](const std::string& /*operation*/, zStatus result) {
            EXPECT_EQ(result, -77);
            EXPECT_EQ(zDataTree_ChildCount(tree.Get(), root), 0U);
            EXPECT_EQ(xzObject_ReferenceCount(data.Get()), 1);
        });
    EXPECT_GE(calls, 4U);
    EXPECT_EQ(zDataTree_ChildCount(tree.Get(), root), 1U);
}

TEST(DataTree, Failing_requests_leave_nothing_behind)
{
    EXPECT_GE(WalkAllocations(BuildAndClone), 20U);
}

TEST(DataTree, Failing_calls_come_through_and_leave_nothing_behind)
{
    const CountingAlloc alloc;
    EXPECT_GE(WalkFaults(-77,
                         [&alloc] {
                             const zStatus status = BuildAndClone(alloc.Get());
                             EXPECT_EQ(alloc.LiveBlocks(), 0U);
                             return status;
                         }),
              30U);
}
