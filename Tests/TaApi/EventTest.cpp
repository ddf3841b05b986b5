#include <TaApi/Event.h>

#include <gtest/gtest.h>

#include <string>

namespace
{
TEST(Event, Listeners_are_called_in_the_order_in_which_they_came)
{
    Ta::Event<int> event;
    std::string calls;
    event.Add([&calls](int value) { calls.append("a").append(std::to_string(value)); });
    event.Add([&calls](int value) { calls.append("b").append(std::to_string(value)); });
    event.Raise(1);
    event.Raise(2);
    EXPECT_EQ(calls, "a1b1a2b2");
}

TEST(Event, Raise_without_listeners_does_nothing)
{
    const Ta::Event<> event;
    EXPECT_NO_THROW(event.Raise());
}

TEST(Event, Removed_listener_is_not_called_and_an_unknown_number_changes_nothing)
{
    Ta::Event<> event;
    int first = 0;
    int second = 0;
    const auto number = event.Add([&first] { ++first; });
    event.Add([&second] { ++second; });
    event.Remove(number);
    event.Remove(number);
    event.Remove(12345);
    event.Raise();
    EXPECT_EQ(first, 0);
    EXPECT_EQ(second, 1);
}

TEST(Event, Number_of_a_removed_listener_is_not_given_out_again)
{
    Ta::Event<> event;
    const auto first = event.Add([] {});
    event.Remove(first);
    EXPECT_NE(event.Add([] {}), first);
}

TEST(Event, Listener_added_during_a_raise_waits_for_the_next_one)
{
    Ta::Event<> event;
    int late = 0;
    bool added = false;
    event.Add([&] {
        if (!added)
        {
            added = true;
            event.Add([&late] { ++late; });
        }
    });
    event.Raise();
    EXPECT_EQ(late, 0);
    event.Raise();
    EXPECT_EQ(late, 1);
}

TEST(Event, Listener_that_removes_itself_during_a_raise_lets_the_others_be_called)
{
    Ta::Event<> event;
    int own = 0;
    int other = 0;
    std::size_t number = 0;
    number = event.Add([&] {
        ++own;
        event.Remove(number);
    });
    event.Add([&other] { ++other; });
    event.Raise();
    event.Raise();
    EXPECT_EQ(own, 1);
    EXPECT_EQ(other, 2);
}
} // namespace
