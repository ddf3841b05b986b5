#include <TaApi/Exception.h>

#include <gtest/gtest.h>

#include <string>
#include <type_traits>

namespace
{
static_assert(std::is_base_of_v<std::exception, Ta::Exception>);
static_assert(std::is_nothrow_copy_constructible_v<Ta::Exception>);
static_assert(std::is_nothrow_copy_assignable_v<Ta::Exception>);

TEST(Exception, Status_alone_has_no_place_and_no_text)
{
    const Ta::Exception exception(-992);
    EXPECT_EQ(exception.Status(), -992);
    EXPECT_EQ(exception.Line(), 0);
    EXPECT_STREQ(exception.File(), "");
    EXPECT_STREQ(exception.Function(), "");
    EXPECT_STREQ(exception.Message(), "");
    EXPECT_STREQ(exception.what(), "status -992");
}

TEST(Exception, Full_form_carries_place_and_formatted_text)
{
    const Ta::Exception exception(17, "Libs/Unit", -997, "Mu::Tools::Work", "%s has %d", "Width", 5);
    EXPECT_EQ(exception.Status(), -997);
    EXPECT_EQ(exception.Line(), 17);
    EXPECT_STREQ(exception.File(), "Libs/Unit");
    EXPECT_STREQ(exception.Function(), "Mu::Tools::Work");
    EXPECT_STREQ(exception.Message(), "Width has 5");
    EXPECT_STREQ(exception.what(), "Width has 5 (status -997 in Mu::Tools::Work, Libs/Unit:17)");
}

TEST(Exception, Null_format_gives_no_text_and_null_places_count_as_empty)
{
    const Ta::Exception exception(3, nullptr, 0, nullptr, nullptr);
    EXPECT_EQ(exception.Status(), 0);
    EXPECT_STREQ(exception.Message(), "");
    EXPECT_STREQ(exception.File(), "");
    EXPECT_STREQ(exception.Function(), "");
}

TEST(Exception, Long_text_is_not_cut)
{
    const std::string text(100000, 'x');
    const Ta::Exception exception(1, "Unit", -997, "Work", "%s", text.c_str());
    EXPECT_EQ(exception.Message(), text);
}

TEST(Exception, Texts_outlive_what_they_were_made_from)
{
    std::string file("Unit");
    const Ta::Exception exception(1, file.c_str(), -997, file.c_str(), nullptr);
    file.assign("gone");
    EXPECT_STREQ(exception.File(), "Unit");
    EXPECT_STREQ(exception.Function(), "Unit");
}

TEST(Exception, Copy_and_assignment_give_the_same_content)
{
    const Ta::Exception exception(17, "Unit", -997, "Work", "text");
    const Ta::Exception copy(exception);
    Ta::Exception assigned(-1);
    assigned = exception;
    for (const Ta::Exception* twin : {&copy, static_cast<const Ta::Exception*>(&assigned)})
    {
        EXPECT_EQ(twin->Status(), -997);
        EXPECT_EQ(twin->Line(), 17);
        EXPECT_STREQ(twin->File(), "Unit");
        EXPECT_STREQ(twin->Function(), "Work");
        EXPECT_STREQ(twin->Message(), "text");
    }
}

TEST(Exception, Is_caught_as_a_standard_exception)
{
    try
    {
        throw Ta::Exception(-984);
    }
    catch (const std::exception& caught)
    {
        EXPECT_STREQ(caught.what(), "status -984");
    }
}
} // namespace
