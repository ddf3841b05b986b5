#include <Host/Lzf.h>

#include "CloudTestFiles.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <random>

namespace
{
using namespace Mu::Host;
using namespace Mu::Host::Testing;
using namespace std::string_literals;

/// What comes out, or the fault as "place: problem".
std::string Unpacked(std::string_view packed, std::size_t size)
{
    std::string unpacked(size, '?');
    const auto fault = UnpackLzf(packed, unpacked);
    return fault ? fmt::format("{}: {}", fault->place, fault->problem) : unpacked;
}

struct Case
{
    const char* name;
    std::string packed;
    std::string unpacked;
};

class Lzf : public testing::TestWithParam<Case>
{
};

TEST_P(Lzf, unpacks_to_what_its_rules_say)
{
    EXPECT_EQ(Unpacked(GetParam().packed, GetParam().unpacked.size()), GetParam().unpacked);
}

// 0x20: three bytes from one back; 0xE0 0x00: nine; 0xE0 0xFF: 264. The low five bits are the higher part of how far
// back, less 1.
INSTANTIATE_TEST_SUITE_P(
    , Lzf,
    testing::Values(Case{"nothing", "", ""}, Case{"one_byte", "\0a"s, "a"}, Case{"two_runs", "\1ab\2cde"s, "abcde"},
                    Case{"longest_run", "\x1f"s + std::string(32, 'x'), std::string(32, 'x')},
                    Case{"repetition", "\1ab\x20\0"s, "abbbb"}, Case{"repetition_of_two", "\1ab\x40\1"s, "ababab"},
                    Case{"six_lengths_short", "\0a\xc0\0"s, std::string(9, 'a')},
                    Case{"first_long_one", "\0a\xe0\0\0"s, std::string(10, 'a')},
                    Case{"longest_one", "\0a\xe0\xff\0"s, std::string(265, 'a')},
                    Case{"far_back", "\0b\0c\xe0\xfd\0\x21\7"s, std::string("b").append(263, 'c').append("bcc")}),
    [](const auto& test) { return std::string(test.param.name); });

struct Fault
{
    std::string packed;
    std::size_t size;
    const char* message;
};

TEST(LzfFaults, Damage_is_told_with_its_place)
{
    const Fault faults[] = {
        {"\2ab"s, 3, "0: the packed bytes end in the middle of an instruction"},
        {"\1ab\x20"s, 5, "3: the packed bytes end in the middle of an instruction"},
        {"\1ab\xe0\0"s, 11, "3: the packed bytes end in the middle of an instruction"},
        {"\2abc"s, 2, "0: more bytes come out than are stated"},
        {"\1ab\x20\0"s, 4, "3: more bytes come out than are stated"},
        {"\1ab"s, 3, "3: fewer bytes come out than are stated"},
        {""s, 1, "0: fewer bytes come out than are stated"},
        {"\1ab\x20\2"s, 5, "3: bytes are to be taken from before the first one"},
        {"\x20\0"s, 3, "0: bytes are to be taken from before the first one"},
    };
    for (const Fault& fault : faults)
    {
        EXPECT_EQ(Unpacked(fault.packed, fault.size), fault.message);
    }
}

TEST(LzfFaults, Packed_text_comes_out_again)
{
    std::mt19937 random(31);
    for (std::size_t size = 0; size < 3000; size += 97)
    {
        std::string text(size, '\0');
        std::ranges::generate(text, [&] { return static_cast<char>('a' + random() % 2); });
        EXPECT_EQ(Unpacked(PackedWithLzf(text), size), text);
    }
}
} // namespace
