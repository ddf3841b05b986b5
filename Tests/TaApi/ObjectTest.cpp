#include "Raised.h"

#include <TaApi/Object.h>

#include <zApi/zAlloc.h>
#include <zApi/zArray1.h>
#include <zApi/zFault.h>

#include <gtest/gtest.h>

#include <type_traits>
#include <utility>

namespace
{
using Handle = Ta::Object<void*>;

static_assert(sizeof(Handle) == sizeof(void*));
static_assert(std::is_nothrow_move_constructible_v<Handle>);
static_assert(std::is_nothrow_destructible_v<Handle>);

constexpr zStatus INJECTED = -12345;

/// Objects are made in an allocator that counts, so that a test sees when the last reference went.
class Object : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_EQ(zCountingAlloc_Construct(&alloc), zOK);
        emptyBlocks = LiveBlocks();
    }

    void TearDown() override
    {
        zFault_Disarm();
        EXPECT_EQ(LiveBlocks(), emptyBlocks) << "an object leaked";
        xzObject_DestroyImpl(alloc);
    }

    [[nodiscard]] void* Make() const
    {
        void* object = nullptr;
        EXPECT_EQ(zArray1_Construct(&object, zTypeOf(z16s), 3, alloc), zOK);
        return object;
    }

    [[nodiscard]] std::size_t LiveBlocks() const
    {
        return zCountingAlloc_Counts(alloc).liveBlocks;
    }

    [[nodiscard]] bool IsEmpty() const
    {
        return LiveBlocks() == emptyBlocks;
    }

    void* alloc = nullptr;
    std::size_t emptyBlocks = 0;
};

void ExpectRaised(const std::optional<Raised>& raised, const char* function)
{
    ASSERT_TRUE(raised);
    EXPECT_EQ(raised->status, INJECTED);
    EXPECT_EQ(raised->function, function);
    EXPECT_EQ(raised->file, "Platform/TaApi/TaApi/Object");
    EXPECT_EQ(raised->message, "");
    EXPECT_GT(raised->line, 0);
}

TEST_F(Object, Default_handle_is_null)
{
    const Handle handle;
    EXPECT_EQ(handle.Get(), nullptr);
    EXPECT_FALSE(handle);
}

TEST_F(Object, Raw_construction_takes_the_callers_reference_over)
{
    void* raw = Make();
    {
        const Handle handle(raw);
        EXPECT_EQ(handle.Get(), raw);
        EXPECT_TRUE(handle);
        EXPECT_EQ(xzObject_ReferenceCount(raw), 1);
    }
    EXPECT_TRUE(IsEmpty());
}

TEST_F(Object, Copy_shares_and_adds_one_reference)
{
    const Handle handle(Make());
    {
        const Handle copy(handle);
        EXPECT_EQ(copy.Get(), handle.Get());
        EXPECT_EQ(xzObject_ReferenceCount(handle.Get()), 2);
    }
    EXPECT_EQ(xzObject_ReferenceCount(handle.Get()), 1);
}

TEST_F(Object, Copy_of_a_null_handle_is_null)
{
    const Handle handle;
    const Handle copy(handle);
    EXPECT_EQ(copy.Get(), nullptr);
}

TEST_F(Object, Failing_copy_raises_and_leaves_the_source_as_it_was)
{
    const Handle handle(Make());
    zFault_Arm(1, INJECTED);
    ExpectRaised(RaisedBy([&handle] { const Handle copy(handle); }), "Ta::Object<void *>::Object");
    zFault_Disarm();
    EXPECT_EQ(xzObject_ReferenceCount(handle.Get()), 1);
}

TEST_F(Object, Move_steals_and_leaves_null)
{
    Handle handle(Make());
    void* raw = handle.Get();
    const Handle moved(std::move(handle));
    EXPECT_EQ(handle.Get(), nullptr); // NOLINT(bugprone-use-after-move): the emptied source is what is tested
    EXPECT_EQ(moved.Get(), raw);
    EXPECT_EQ(xzObject_ReferenceCount(raw), 1);
}

TEST_F(Object, Reset_releases_what_was_held)
{
    Handle handle(Make());
    handle.Reset();
    EXPECT_EQ(handle.Get(), nullptr);
    EXPECT_TRUE(IsEmpty());
}

TEST_F(Object, Reset_without_share_takes_the_reference_over)
{
    Handle handle(Make());
    void* raw = Make();
    handle.Reset(raw, false);
    EXPECT_EQ(handle.Get(), raw);
    EXPECT_EQ(xzObject_ReferenceCount(raw), 1);
}

TEST_F(Object, Reset_with_share_adds_a_reference_unless_null)
{
    const Handle owner(Make());
    Handle handle(Make());
    handle.Reset(owner.Get(), true);
    EXPECT_EQ(xzObject_ReferenceCount(owner.Get()), 2);
    handle.Reset(nullptr, true);
    EXPECT_EQ(handle.Get(), nullptr);
    EXPECT_EQ(xzObject_ReferenceCount(owner.Get()), 1);
}

TEST_F(Object, Reset_to_the_same_object_with_share_keeps_it_alive)
{
    Handle handle(Make());
    handle.Reset(handle.Get(), true);
    EXPECT_EQ(xzObject_ReferenceCount(handle.Get()), 1);
}

TEST_F(Object, Failing_share_in_Reset_raises_and_keeps_the_handle_as_it_was)
{
    const Handle owner(Make());
    Handle handle(Make());
    void* before = handle.Get();
    zFault_Arm(1, INJECTED);
    ExpectRaised(RaisedBy([&] { handle.Reset(owner.Get(), true); }), "Ta::Object<void *>::Reset");
    zFault_Disarm();
    EXPECT_EQ(handle.Get(), before);
    EXPECT_EQ(xzObject_ReferenceCount(owner.Get()), 1);
}

TEST_F(Object, Failing_release_in_Reset_raises_and_holds_the_new_object)
{
    const Handle owner(Make());
    Handle handle(Make());
    zFault_Arm(2, INJECTED);
    ExpectRaised(RaisedBy([&] { handle.Reset(owner.Get(), true); }), "Ta::Object<void *>::Reset");
    zFault_Disarm();
    EXPECT_EQ(handle.Get(), owner.Get());
    EXPECT_EQ(xzObject_ReferenceCount(owner.Get()), 2);
}

TEST_F(Object, Copy_assignment_shares_and_releases_what_was_held)
{
    const Handle source(Make());
    Handle target(Make());
    target = source;
    EXPECT_EQ(target.Get(), source.Get());
    EXPECT_EQ(xzObject_ReferenceCount(source.Get()), 2);
}

TEST_F(Object, Assignment_to_itself_changes_nothing)
{
    Handle handle(Make());
    void* raw = handle.Get();
    Handle& same = handle;
    handle = same;
    EXPECT_EQ(handle.Get(), raw);
    EXPECT_EQ(xzObject_ReferenceCount(raw), 1);
    handle = std::move(same);
    EXPECT_EQ(handle.Get(), raw);
    EXPECT_EQ(xzObject_ReferenceCount(raw), 1);
}

TEST_F(Object, Move_assignment_steals_and_releases_what_was_held)
{
    Handle source(Make());
    void* raw = source.Get();
    Handle target(Make());
    target = std::move(source);
    EXPECT_EQ(target.Get(), raw);
    EXPECT_EQ(source.Get(), nullptr); // NOLINT(bugprone-use-after-move): the emptied source is what is tested
    EXPECT_EQ(xzObject_ReferenceCount(raw), 1);
}

TEST_F(Object, Failing_share_in_an_assignment_raises_under_its_name)
{
    const Handle source(Make());
    Handle target(Make());
    void* before = target.Get();
    zFault_Arm(1, INJECTED);
    ExpectRaised(RaisedBy([&] { target = source; }), "Ta::Object<void *>::operator =");
    zFault_Disarm();
    EXPECT_EQ(target.Get(), before);
}

TEST_F(Object, Failing_release_in_an_assignment_raises_under_its_name)
{
    const Handle source(Make());
    Handle target(Make());
    zFault_Arm(2, INJECTED);
    ExpectRaised(RaisedBy([&] { target = source; }), "Ta::Object<void *>::operator =");
    zFault_Disarm();

    Handle moved(Make());
    zFault_Arm(1, INJECTED);
    ExpectRaised(RaisedBy([&] { target = std::move(moved); }), "Ta::Object<void *>::operator =");
    zFault_Disarm();
}

TEST_F(Object, Out_gives_the_handles_own_pointer_and_releases_what_was_held)
{
    Handle handle(Make());
    ASSERT_EQ(zArray1_Construct(handle.Out(), zTypeOf(z8u), 5, alloc), zOK);
    EXPECT_EQ(zArray1_Length(handle.Get()), 5U);
    EXPECT_EQ(xzObject_ReferenceCount(handle.Get()), 1);
}

TEST_F(Object, Detach_gives_the_reference_up)
{
    Handle handle(Make());
    void* raw = handle.Detach();
    EXPECT_EQ(handle.Get(), nullptr);
    EXPECT_EQ(xzObject_ReferenceCount(raw), 1);
    EXPECT_EQ(xzObject_DestroyImpl(raw), zOK);
}

TEST_F(Object, Destructor_releases_even_if_the_release_reports_a_failure)
{
    {
        const Handle handle(Make());
        zFault_Arm(1, INJECTED);
    }
    EXPECT_STREQ(zFault_Operation(), "xzObject_DestroyImpl");
    zFault_Disarm();
    EXPECT_TRUE(IsEmpty());
}

TEST_F(Object, Release_of_a_null_handle_succeeds)
{
    Handle handle;
    EXPECT_NO_THROW(handle.Reset());
    EXPECT_EQ(handle.Get(), nullptr);
}
} // namespace
