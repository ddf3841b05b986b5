#include <Support/ContainerBytes.h>
#include <Support/SavedObjects.h>
#include <Support/TemporaryFolder.h>

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <cstdio>

using namespace Support;

namespace
{
std::string OutputOf(const std::string& command)
{
    std::string output;
    std::FILE* const pipe = ::popen(command.c_str(), "r");
    std::array<char, 4096> buffer{};
    for (std::size_t got = 1; pipe != nullptr && got > 0;)
    {
        got = std::fread(buffer.data(), 1, buffer.size(), pipe);
        output.append(buffer.data(), got);
    }
    return pipe != nullptr && ::pclose(pipe) == 0 ? output : "the reader failed";
}

std::string ReadByScript(const std::string& path)
{
    return OutputOf(std::string(PYTHON) + " -B " + DAT6_READER + " " + path);
}
} // namespace

TEST(Dat6, The_reader_in_another_language_gives_what_was_saved)
{
    const TemporaryFolder folder;
    const std::string path = folder.Path("object.zDat6");
    ASSERT_EQ(zSave6(Recording().Get(), path.c_str()), zOK);
    const auto read = nlohmann::json::parse(ReadByScript(path), nullptr, false);
    ASSERT_FALSE(read.is_discarded());
    const auto& items = read["items"];
    ASSERT_EQ(items.size(), 3U);
    EXPECT_EQ(items[0], nlohmann::json::parse(R"([0, "Inputs", null])"));
    EXPECT_EQ(items[2], nlohmann::json::parse(R"([1, "1", null])"));
    EXPECT_EQ(items[1][0], 1);
    EXPECT_EQ(items[1][1], "0");
    const auto& list = items[1][2];
    EXPECT_EQ(list["type"], nlohmann::json::parse(R"(["zMsgSet", 8])"));
    ASSERT_EQ(list["items"].size(), 3U);
    const auto& surface = list["items"][0];
    EXPECT_EQ(surface["object"], "TvSurfaceMsg");
    EXPECT_EQ(surface["offset"], nlohmann::json::parse("[0.0, 1.0, 5.0]"));
    EXPECT_EQ(surface["points"]["items"], nlohmann::json::parse("[[1], [-2], [3], [-32768]]"));
    EXPECT_EQ(surface["intensity"]["items"], nlohmann::json::parse("[[9], [8], [7], [6]]"));
    EXPECT_TRUE(list["items"][1].is_null());
    const auto& measure = list["items"][2];
    EXPECT_EQ(measure["stamps"], nlohmann::json::parse("[[0,0,0,0],[0,0,0,0],[1,2,3,-4]]"));
    EXPECT_EQ(measure["space"], -5);
    EXPECT_EQ(measure["value"], 1.5);
    EXPECT_EQ(measure["label"], nlohmann::json::parse("[1.0, 2.0, 3.0]"));
    EXPECT_EQ(measure["passed"], 0);
    EXPECT_EQ(measure["source"], 7);
}

TEST(Dat6, The_reader_in_another_language_gives_the_graphics_that_were_saved)
{
    const TemporaryFolder folder;
    const std::string path = folder.Path("object.zDat6");
    ASSERT_EQ(zSave6(RenderingOf(Drawing()).Get(), path.c_str()), zOK);
    const auto read = nlohmann::json::parse(ReadByScript(path), nullptr, false);
    ASSERT_FALSE(read.is_discarded());
    const auto points = nlohmann::json::parse(
        R"({"object": "zArray1", "type": ["zPoint3d32f", 12], "columns": 2, "items": [[1, 2, 3], [4, 5, 6]]})");
    const char* const expected[] = {
        R"({"object": "TpGraphicPointSet", "size": 1.5, "shape": 2, "color": 10})",
        R"({"object": "TpGraphicLineSet", "width": 2.5, "color": 20, "mode": 1, "ending": 3})",
        R"({"object": "TpGraphicRay", "position": [1, 2, 3], "direction": [4, 5, 6], "width": 3.5, "color": 30})",
        R"({"object": "TpGraphicLabel", "position": [7, 8, 9], "text": {"object": "zString", "text": "Höhe"}})",
        R"({"object": "TpGraphicPlane", "normal": [1, 0, 2], "distance": 4.5})",
        R"({"object": "TpGraphicRegion2d", "center": [1, 2], "dimensions": [3, 4], "angle": 0.5})",
        R"({"object": "TpGraphicRegion3d", "center": [1, 2, 3], "dimensions": [4, 5, 6], "angle": 0.25})",
        R"({"object": "TpGraphicPosition", "type": 2, "position": [1, 2, 3]})"};
    const auto& elements = read["graphic"]["elements"];
    ASSERT_EQ(elements.size(), std::size(expected));
    for (std::size_t i = 0; i < elements.size(); ++i)
    {
        auto element = nlohmann::json::parse(expected[i]);
        if (i < 2)
        {
            element["points"] = points;
        }
        EXPECT_EQ(elements[i], element);
    }
}

TEST(Dat6, The_reader_in_another_language_gives_the_lists_and_images_that_were_saved)
{
    const struct
    {
        Object (*make)();
        const char* read;
    } cases[] = {
        {LinkedHeights, R"({"object": "zList", "type": ["z16s", 2], "columns": 3, "items": [[-2], [3], [4]]})"},
        {WrappedQueue, R"({"object": "zQueue", "type": ["z32s", 4], "columns": 3, "items": [[-2], [3], [4]]})"},
        {PictureWithGaps, R"({"object": "zImage", "type": ["z8u", 1], "rows": 2, "columns": 3,
                              "items": [[0], [1], [2], [4], [5], [6]]})"},
    };
    const TemporaryFolder folder;
    const std::string path = folder.Path("object.zDat6");
    for (const auto& [make, read] : cases)
    {
        ASSERT_EQ(zSave6(make().Get(), path.c_str()), zOK);
        EXPECT_EQ(nlohmann::json::parse(ReadByScript(path), nullptr, false), nlohmann::json::parse(read));
    }
}

TEST(Dat6, The_reader_in_another_language_names_what_is_no_number)
{
    const TemporaryFolder folder;
    const std::string path = folder.Path("object.zDat6");
    ASSERT_EQ(zSave6(OddRay().Get(), path.c_str()), zOK);
    const auto read = nlohmann::json::parse(ReadByScript(path), nullptr, false);
    EXPECT_EQ(read["position"], nlohmann::json::parse(R"(["NaN", "Infinity", "-Infinity"])"));
}

TEST(Dat6, The_reader_in_another_language_fits_in_60_lines)
{
    const std::string script = FileContent(DAT6_READER);
    EXPECT_GT(std::ranges::count(script, '\n'), 10);
    EXPECT_LE(std::ranges::count(script, '\n'), 60);
}

TEST(Dat6, The_reader_in_another_language_takes_every_type)
{
    const TemporaryFolder folder;
    const std::string path = folder.Path("object.zDat6");
    for (const Case& testCase : CASES)
    {
        SCOPED_TRACE(testCase.name);
        const Object object = testCase.make();
        ASSERT_EQ(zSave6(object.Get(), path.c_str()), zOK);
        const auto read = nlohmann::json::parse(ReadByScript(path), nullptr, false);
        ASSERT_FALSE(read.is_discarded());
        EXPECT_EQ(read.is_null(), object.Get() == nullptr);
        if (object.Get() != nullptr)
        {
            EXPECT_EQ(read["object"], xzObject_Type(object.Get())->name);
        }
    }
}

TEST(Dat6, The_reader_in_another_language_refuses_a_changed_byte)
{
    const TemporaryFolder folder;
    std::string bytes = SavedBytes(Recording().Get());
    bytes[100] = static_cast<char>(bytes[100] ^ 1);
    const std::string path = folder.Path("object.zDat6");
    ASSERT_EQ(zFile_Save(path.c_str(), bytes.data(), bytes.size()), zOK);
    EXPECT_EQ(OutputOf(std::string(PYTHON) + " -B " + DAT6_READER + " " + path + " 2>&1; true"),
              "The checksum is wrong.\n");
}
