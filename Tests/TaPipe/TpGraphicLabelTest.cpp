#include <Support/GraphicElements.h>
#include <Support/MessageChecks.h>

#include <gtest/gtest.h>

using namespace Support;

namespace
{
Ta::Object<void*> NewLabel(const char* text, zAlloc alloc = nullptr)
{
    TpGraphicLabel label = nullptr;
    EXPECT_EQ(TpGraphicLabel_Construct(&label, alloc), zOK);
    EXPECT_EQ(TpGraphicLabel_SetText(label, text), zOK);
    return Ta::Object<void*>(label);
}
} // namespace

TEST(TpGraphicLabel, Keeps_a_copy_of_the_text)
{
    std::string text = "42 mm";
    const auto label = NewLabel(text.c_str());
    text[0] = 'X';
    EXPECT_STREQ(TpGraphicLabel_Text(label.Get()), "42 mm");
    ASSERT_EQ(TpGraphicLabel_SetText(label.Get(), ""), zOK);
    EXPECT_STREQ(TpGraphicLabel_Text(label.Get()), "");
}

TEST(TpGraphicLabel, Own_text_can_be_set_again)
{
    const auto label = NewLabel("a text that is longer than a few bytes");
    ASSERT_EQ(TpGraphicLabel_SetText(label.Get(), TpGraphicLabel_Text(label.Get()) + 27), zOK);
    EXPECT_STREQ(TpGraphicLabel_Text(label.Get()), "a few bytes");
}

TEST(TpGraphicLabel, Text_that_is_not_there_is_refused)
{
    const auto label = NewLabel("before");
    EXPECT_EQ(TpGraphicLabel_SetText(label.Get(), nullptr), zERROR_MISSING);
    EXPECT_STREQ(TpGraphicLabel_Text(label.Get()), "before");
}

TEST(TpGraphicLabel, Text_stays_if_a_new_one_cannot_be_had)
{
    const CountingAlloc alloc;
    {
        const auto label = NewLabel("before", alloc.Get());
        alloc.FailAt(1);
        EXPECT_EQ(TpGraphicLabel_SetText(label.Get(), "after"), zERROR_MEMORY);
        EXPECT_STREQ(TpGraphicLabel_Text(label.Get()), "before");
    }
    EXPECT_EQ(alloc.LiveBlocks(), 0U);
}

TEST(TpGraphicLabel, Clone_keeps_its_text)
{
    const auto label = NewLabel("before");
    const auto clone = CloneOf(label.Get());
    ASSERT_EQ(TpGraphicLabel_SetText(label.Get(), "after"), zOK);
    EXPECT_STREQ(TpGraphicLabel_Text(clone.Get()), "before");
}
