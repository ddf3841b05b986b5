#include <Support/MessageChecks.h>

#include <zApi/zString.h>

#include <gtest/gtest.h>

using namespace Support;

namespace
{
// Any object does for a graphic here.
Ta::Object<void*> Graphic(const char* text, zAlloc alloc = nullptr)
{
    zString graphic = nullptr;
    EXPECT_EQ(zString_Construct(&graphic, text, alloc), zOK);
    return Ta::Object<void*>(graphic);
}

Ta::Object<void*> NewRendering(zAlloc alloc = nullptr)
{
    TvRenderingMsg msg = nullptr;
    EXPECT_EQ(TvRenderingMsg_Construct(&msg, alloc), zOK);
    return Ta::Object<void*>(msg);
}
} // namespace

TEST(RenderingMsg, New_one_has_no_graphics_and_costs_one_request)
{
    const CountingAlloc alloc;
    {
        const auto msg = NewRendering(alloc.Get());
        EXPECT_EQ(TvRenderingMsg_Rendering(msg.Get()), nullptr);
        EXPECT_EQ(alloc.Requests(), 1U);
    }
    EXPECT_EQ(alloc.LiveBlocks(), 0U);
    EXPECT_EQ(TvRenderingMsg_Construct(nullptr, nullptr), zERROR_MISSING);
}

TEST(RenderingMsg, Takes_over_one_reference)
{
    const auto graphic = Graphic("a");
    {
        const auto msg = NewRendering();
        ASSERT_EQ(xzObject_ShareImpl(graphic.Get()), zOK);
        ASSERT_EQ(TvRenderingMsg_SetRendering(msg.Get(), graphic.Get()), zOK);
        EXPECT_EQ(TvRenderingMsg_Rendering(msg.Get()), graphic.Get());
        EXPECT_EQ(xzObject_ReferenceCount(graphic.Get()), 2);
    }
    EXPECT_EQ(xzObject_ReferenceCount(graphic.Get()), 1);
}

TEST(RenderingMsg, New_graphics_release_the_former_ones)
{
    const auto former = Graphic("a");
    const auto msg = Rendering(former);
    EXPECT_EQ(xzObject_ReferenceCount(former.Get()), 2);
    ASSERT_EQ(TvRenderingMsg_SetRendering(msg.Get(), Graphic("b").Detach()), zOK);
    EXPECT_EQ(xzObject_ReferenceCount(former.Get()), 1);
    EXPECT_STREQ(zString_Chars(TvRenderingMsg_Rendering(msg.Get())), "b");
    ASSERT_EQ(TvRenderingMsg_SetRendering(msg.Get(), nullptr), zOK);
    EXPECT_EQ(TvRenderingMsg_Rendering(msg.Get()), nullptr);
}

TEST(RenderingMsg, Refused_graphics_stay_the_callers)
{
    const auto graphic = Graphic("a");
    const auto measure = Measure(1);
    for (void* const handle : {measure.Get(), static_cast<void*>(nullptr)})
    {
        EXPECT_EQ(TvRenderingMsg_SetRendering(handle, graphic.Get()), zERROR_PARAMETER);
        EXPECT_EQ(TvRenderingMsg_Rendering(handle), nullptr);
    }
    const auto msg = Rendering(Graphic("b"));
    {
        const ArmedFault fault(1, -66);
        EXPECT_EQ(TvRenderingMsg_SetRendering(msg.Get(), graphic.Get()), -66);
    }
    EXPECT_STREQ(zString_Chars(TvRenderingMsg_Rendering(msg.Get())), "b");
    EXPECT_EQ(xzObject_ReferenceCount(graphic.Get()), 1);
}

TEST(RenderingMsg, Clone_has_a_copy_of_the_graphics)
{
    const auto msg = Rendering(Graphic("a"));
    const auto clone = CloneOf(msg.Get());
    EXPECT_NE(TvRenderingMsg_Rendering(clone.Get()), TvRenderingMsg_Rendering(msg.Get()));
    EXPECT_STREQ(zString_Chars(TvRenderingMsg_Rendering(clone.Get())), "a");
    EXPECT_EQ(TvRenderingMsg_Rendering(CloneOf(NewRendering().Get()).Get()), nullptr);
}

TEST(RenderingMsg, Failures_leave_nothing_behind)
{
    // The message and a string of two blocks, and as many in the clone.
    EXPECT_EQ(ExpectCleanFailures([](zObject* msg, zAlloc alloc) {
                  zString graphic = nullptr;
                  zTRY(TvRenderingMsg_Construct(msg, alloc));
                  zTRY(zString_Construct(&graphic, "a", alloc));
                  const zStatus status = TvRenderingMsg_SetRendering(*msg, graphic);
                  if (status != zOK)
                  {
                      static_cast<void>(xzObject_DestroyImpl(graphic));
                  }
                  return status;
              }),
              6U);
}
