#pragma once

#include <TaApi/Exception.h>
#include <TaCommon/IPersistStore.h>

#include <algorithm>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <vector>

// What every store must do. A test of a store instantiates the suite with a class that makes one:
//
//     struct SomeStoreMaker
//     {
//         TaCommon::IPersistStore& Store(); // empty at first, the same one throughout
//     };
//     INSTANTIATE_TYPED_TEST_SUITE_P(SomeStore, Persist_store, SomeStoreMaker);

namespace Support
{
template <typename Maker>
class Persist_store : public testing::Test
{
protected:
    using Names = std::vector<std::string>;

    static std::vector<z8u> BytesOf(const std::string& text)
    {
        return {text.begin(), text.end()};
    }

    void Write(const std::string& name, const std::string& text)
    {
        store.Write(name, text.data(), text.size());
    }

    template <typename Act>
    static int StatusOf(const Act& act)
    {
        try
        {
            act();
        }
        catch (const Ta::Exception& exception)
        {
            return exception.Status();
        }
        return zOK;
    }

    Maker maker;
    TaCommon::IPersistStore& store = maker.Store();
};

TYPED_TEST_SUITE_P(Persist_store);

TYPED_TEST_P(Persist_store, Is_empty_at_first)
{
    EXPECT_EQ(this->store.List("/", false), std::vector<std::string>());
    EXPECT_EQ(this->store.List("", true), std::vector<std::string>());
    EXPECT_FALSE(this->store.Exists("/a"));
}

TYPED_TEST_P(Persist_store, Gives_back_the_bytes_that_were_written)
{
    const std::vector<z8u> bytes = {0, 255, 10, 13, 0, 26};
    this->store.Write("/a.bin", bytes.data(), bytes.size());
    EXPECT_TRUE(this->store.Exists("/a.bin"));
    EXPECT_EQ(this->store.Read("/a.bin"), bytes);
}

TYPED_TEST_P(Persist_store, Gives_back_a_large_file)
{
    std::mt19937 random(1);
    std::vector<z8u> bytes(3'000'001);
    std::generate(bytes.begin(), bytes.end(), [&random] { return static_cast<z8u>(random() & 0xFFU); });
    this->store.Write("/large", bytes.data(), bytes.size());
    EXPECT_TRUE(this->store.Read("/large") == bytes);
}

TYPED_TEST_P(Persist_store, Null_and_no_bytes_make_an_empty_file)
{
    this->Write("/a", "before");
    this->store.Write("/a", nullptr, 0);
    EXPECT_TRUE(this->store.Exists("/a"));
    EXPECT_EQ(this->store.Read("/a"), std::vector<z8u>());
    EXPECT_EQ(this->store.List("/", false), std::vector<std::string>{"a"});
}

TYPED_TEST_P(Persist_store, Writing_again_replaces_all_bytes)
{
    this->Write("/a", "a long text");
    this->Write("/a", "short");
    EXPECT_EQ(this->store.Read("/a"), this->BytesOf("short"));
    EXPECT_EQ(this->store.List("/", false).size(), 1U);
}

TYPED_TEST_P(Persist_store, Slash_in_front_may_be_left_out)
{
    this->Write("/a", "1");
    this->Write("a", "2");
    this->Write("f/b", "3");
    EXPECT_EQ(this->store.Read("/a"), this->BytesOf("2"));
    EXPECT_TRUE(this->store.Exists("/f/b"));
    EXPECT_EQ(this->store.List("", false), std::vector<std::string>{"a"});
    for (const char* const folder : {"f", "/f", "f/", "/f/"})
    {
        EXPECT_EQ(this->store.List(folder, false), std::vector<std::string>{"b"}) << folder;
    }
}

TYPED_TEST_P(Persist_store, Lists_bare_names_in_bytewise_order)
{
    for (const char* const name : {"/Model-0010.bin", "/Model-0002.bin", "/a", "/Z", "/\xC3\xA4", "/10", "/9", "/a b"})
    {
        this->Write(name, "x");
    }
    EXPECT_EQ(this->store.List("/", false),
              (std::vector<std::string>{"10", "9", "Model-0002.bin", "Model-0010.bin", "Z", "a", "a b", "\xC3\xA4"}));
}

TYPED_TEST_P(Persist_store, Lists_folders_below_only_if_asked_to)
{
    for (const char* const name : {"/f/b", "/f/g/c", "/a", "/fa/d"})
    {
        this->Write(name, "x");
    }
    EXPECT_EQ(this->store.List("/", false), std::vector<std::string>{"a"});
    EXPECT_EQ(this->store.List("/", true), (std::vector<std::string>{"a", "f/b", "f/g/c", "fa/d"}));
    EXPECT_EQ(this->store.List("/f", false), std::vector<std::string>{"b"});
    EXPECT_EQ(this->store.List("/f", true), (std::vector<std::string>{"b", "g/c"}));
    EXPECT_EQ(this->store.List("/nothing", true), std::vector<std::string>());
    EXPECT_EQ(this->store.List("/a", true), std::vector<std::string>());
}

TYPED_TEST_P(Persist_store, Names_differ_by_case)
{
    this->Write("/a", "1");
    this->Write("/A", "2");
    EXPECT_EQ(this->store.Read("/a"), this->BytesOf("1"));
    EXPECT_EQ(this->store.Read("/A"), this->BytesOf("2"));
}

TYPED_TEST_P(Persist_store, Characters_that_search_patterns_use_are_plain)
{
    this->Write("/a%", "1");
    this->Write("/ab", "2");
    this->Write("/f_/x", "3");
    this->Write("/fa/x", "4");
    this->Write("/[a]*?'\"", "5");
    EXPECT_EQ(this->store.Read("/a%"), this->BytesOf("1"));
    EXPECT_EQ(this->store.List("/f_", false), std::vector<std::string>{"x"});
    EXPECT_EQ(this->store.List("/%", true), std::vector<std::string>());
    this->store.Delete("/a%");
    EXPECT_TRUE(this->store.Exists("/ab"));
    EXPECT_EQ(this->store.Read("/[a]*?'\""), this->BytesOf("5"));
}

TYPED_TEST_P(Persist_store, Deleted_file_is_gone)
{
    this->Write("/a", "1");
    this->Write("/b", "2");
    this->store.Delete("/a");
    EXPECT_FALSE(this->store.Exists("/a"));
    EXPECT_EQ(this->store.List("/", false), std::vector<std::string>{"b"});
    EXPECT_EQ(this->StatusOf([this] { return this->store.Read("/a"); }), zERROR_MISSING);
    this->store.Delete("/a");
    EXPECT_EQ(this->store.Read("/b"), this->BytesOf("2"));
}

TYPED_TEST_P(Persist_store, File_that_is_not_there_cannot_be_read)
{
    this->Write("/f/a", "1");
    EXPECT_EQ(this->StatusOf([this] { return this->store.Read("/a"); }), zERROR_MISSING);
    EXPECT_EQ(this->StatusOf([this] { return this->store.Read("/f"); }), zERROR_MISSING);
    EXPECT_FALSE(this->store.Exists("/f"));
}

TYPED_TEST_P(Persist_store, Bytes_that_are_not_there_are_refused_and_change_nothing)
{
    this->Write("/a", "1");
    EXPECT_EQ(this->StatusOf([this] { this->store.Write("/a", nullptr, 1); }), zERROR_MISSING);
    EXPECT_EQ(this->store.Read("/a"), this->BytesOf("1"));
}

TYPED_TEST_P(Persist_store, Bad_names_are_refused)
{
    this->Write("/f/a", "1");
    const std::vector<std::string> bad = {"",
                                          "/",
                                          "//a",
                                          "/f//a",
                                          "/f/",
                                          "..",
                                          "/../a",
                                          "/f/../a",
                                          "/./f",
                                          "/f/.",
                                          "/a\\b",
                                          "C:\\a",
                                          "a\nb",
                                          "/\x7F",
                                          "\x01x",
                                          "a\tb/c",
                                          std::string("a\0b", 3)};
    for (const std::string& name : bad)
    {
        SCOPED_TRACE(testing::PrintToString(name));
        EXPECT_FALSE(this->store.Exists(name));
        EXPECT_EQ(this->StatusOf([&] { return this->store.Read(name); }), zERROR_PARAMETER);
        EXPECT_EQ(this->StatusOf([&] { this->Write(name, "x"); }), zERROR_PARAMETER);
        EXPECT_EQ(this->StatusOf([&] { this->store.Delete(name); }), zERROR_PARAMETER);
    }
    for (const char* const folder : {"..", "/f/..", "//", "/f//", "\\"})
    {
        EXPECT_EQ(this->store.List(folder, true), std::vector<std::string>()) << folder;
    }
    EXPECT_EQ(this->store.List("/", true), std::vector<std::string>{"f/a"});
}

REGISTER_TYPED_TEST_SUITE_P(Persist_store, Is_empty_at_first, Gives_back_the_bytes_that_were_written,
                            Gives_back_a_large_file, Null_and_no_bytes_make_an_empty_file,
                            Writing_again_replaces_all_bytes, Slash_in_front_may_be_left_out,
                            Lists_bare_names_in_bytewise_order, Lists_folders_below_only_if_asked_to,
                            Names_differ_by_case, Characters_that_search_patterns_use_are_plain, Deleted_file_is_gone,
                            File_that_is_not_there_cannot_be_read,
                            Bytes_that_are_not_there_are_refused_and_change_nothing, Bad_names_are_refused);
} // namespace Support
