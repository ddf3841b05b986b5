#include <TaPipe/InputSet.h>

#include <Support/Builders.h>
#include <Support/FaultWalk.h>

#include <gtest/gtest.h>

#include <array>

namespace
{
using namespace Support;
using TaPipe::InputItem;
using TaPipe::InputSet;
using TaPipe::ToolInputInfo;

struct NoOwner final : TaPipe::IInputOwner
{
    void OnRouted(ToolInputInfo&, const TaPipe::InputRoutedInfo&, bool) override {}
};

class Input_set : public testing::Test
{
protected:
    void Add(const ToolInputInfo& input, const std::vector<Ta::Object<void*>>& messages)
    {
        std::vector<void*> handles;
        for (const Ta::Object<void*>& message : messages)
        {
            handles.push_back(message.Get());
        }
        set.Add(input, handles);
    }

    NoOwner owner;
    ToolInputInfo a{owner, "A", 4};
    ToolInputInfo b{owner, "B", 7};
    InputSet set;
};

TEST_F(Input_set, that_is_empty_finds_nothing)
{
    EXPECT_EQ(set.Count(), 0U);
    EXPECT_EQ(set.FindByIndex(0), nullptr);
    EXPECT_EQ(set.FindByName("A"), nullptr);
    EXPECT_EQ(set.FindByName(nullptr), nullptr);
}

TEST_F(Input_set, finds_items_by_the_index_and_the_id_of_their_input)
{
    Add(b, {Measure(1)});
    Add(a, {});
    EXPECT_EQ(set.Count(), 2U);
    EXPECT_EQ(&set.At(0).Input(), &b);
    EXPECT_EQ(set.FindByIndex(4), &set.At(1));
    EXPECT_EQ(set.FindByName("B"), &set.At(0));
    EXPECT_EQ(set.FindByIndex(0), nullptr);
    EXPECT_EQ(set.FindByName("a"), nullptr);
}

TEST_F(Input_set, raises_past_its_end)
{
    Add(a, {});
    try
    {
        static_cast<void>(set.At(1));
        FAIL();
    }
    catch (const Ta::Exception& exception)
    {
        EXPECT_EQ(exception.Status(), -997);
        EXPECT_STREQ(exception.Function(), "TaPipe::InputSet::At");
    }
}

TEST_F(Input_set, gives_the_first_message_and_each_by_its_place)
{
    const Ta::Object<void*> first = Measure(1);
    const Ta::Object<void*> second = Measure(2);
    Add(a, {first, second});
    const InputItem& item = set.At(0);
    EXPECT_EQ(item.MessageCount(), 2U);
    EXPECT_EQ(item.Message(true).Get(), first.Get());
    EXPECT_EQ(item.MessageAt(1, true).Get(), second.Get());
    EXPECT_EQ(item.MessageAt(2, true).Get(), nullptr);
}

TEST_F(Input_set, an_item_without_messages_has_a_null_one)
{
    Add(a, {});
    EXPECT_EQ(set.At(0).MessageCount(), 0U);
    EXPECT_FALSE(set.At(0).Message(true));
    EXPECT_FALSE(set.At(0).Message(false));
}

TEST_F(Input_set, a_null_message_counts_as_no_data_if_asked_so)
{
    const Ta::Object<void*> null = NullMessage();
    Add(a, {null});
    Add(b, {Ta::Object<void*>()});
    EXPECT_FALSE(set.At(0).Message(true));
    EXPECT_EQ(set.At(0).Message(false).Get(), null.Get());
    EXPECT_FALSE(set.At(1).Message(true));
    EXPECT_FALSE(set.At(1).Message(false));
}

TEST_F(Input_set, keeps_messages_of_earlier_items_in_place_as_it_grows)
{
    const Ta::Object<void*> message = Measure(1);
    Add(a, {message});
    for (int i = 0; i < 100; ++i)
    {
        Add(b, {Measure(2), Measure(3)});
    }
    EXPECT_EQ(set.At(0).Message(true).Get(), message.Get());
    EXPECT_EQ(TvMeasureMsg_Value(set.At(57).MessageAt(1, true).Get()), 3);
}

TEST_F(Input_set, shares_messages_and_lets_go_of_them)
{
    const Ta::Object<void*> message = Measure(1);
    Add(a, {message});
    EXPECT_EQ(xzObject_ReferenceCount(message.Get()), 2);
    set.Clear();
    EXPECT_EQ(xzObject_ReferenceCount(message.Get()), 1);
    EXPECT_EQ(set.Count(), 0U);
}

TEST_F(Input_set, that_cannot_share_a_message_raises_and_holds_no_half_of_it)
{
    const Ta::Object<void*> message = Measure(1);
    const std::array<void*, 1> handle{message.Get()};
    {
        const ArmedFault fault(1, -77);
        EXPECT_THROW(set.Add(a, handle), Ta::Exception);
    }
    EXPECT_EQ(xzObject_ReferenceCount(message.Get()), 1);
}
} // namespace
