#include <Support/ContainerBytes.h>
#include <Support/FaultWalk.h>
#include <Support/ObjectText.h>
#include <Support/SavedObjects.h>
#include <Support/TemporaryFolder.h>

#include <bit>
#include <optional>
#include <random>

using namespace Support;

namespace
{
class Saved_object : public testing::TestWithParam<Case>
{
protected:
    static void SetUpTestSuite()
    {
        ASSERT_EQ(TaPipe_RegisterTypes(), zOK);
    }

    /// Random numbers whose seed is printed if the test fails.
    std::mt19937 Random()
    {
        const unsigned seed = std::random_device()();
        trace.emplace(__FILE__, __LINE__, "seed " + std::to_string(seed));
        return std::mt19937(seed);
    }

private:
    std::optional<testing::ScopedTrace> trace;
};

bool IsSmall(const std::string& bytes)
{
    return bytes.size() < 20'000;
}

/// What is small is gone through byte by byte.
std::size_t StepThrough(const std::string& bytes)
{
    return IsSmall(bytes) ? 1 : bytes.size() / 97;
}

/// Lets every call of `run(alloc)` fail once: the status comes through, and nothing is left behind.
template <typename Run>
void ExpectCleanFailingCalls(const Run& run)
{
    const CountingAlloc alloc;
    const std::size_t calls = WalkFaults(-77, [&] {
        const zStatus status = run(alloc.Get());
        EXPECT_EQ(alloc.LiveBlocks(), 0U);
        return status;
    });
    EXPECT_GT(calls, 4U);
}

void ExpectRefusedOrUsable(const std::string& bytes)
{
    const CountingAlloc alloc;
    zObject object = nullptr;
    if (Load(&object, bytes, alloc.Get()) == zOK)
    {
        EXPECT_EQ(Shown(CloneOf(object).Get()), Shown(object));
        EXPECT_EQ(SavedBytes(object), bytes);
    }
    static_cast<void>(xzObject_DestroyImpl(object));
    EXPECT_EQ(alloc.LiveBlocks(), 0U);
}
} // namespace

TEST_P(Saved_object, comes_back_from_a_file_as_it_was)
{
    const TemporaryFolder folder;
    const Object object = GetParam().make();
    Object loaded;
    ASSERT_EQ(zSave6(object.Get(), folder.Path("object.zDat6").c_str()), zOK);
    ASSERT_EQ(zLoad6(loaded.Out(), folder.Path("object.zDat6").c_str(), nullptr), zOK);
    EXPECT_EQ(Shown(loaded.Get()), Shown(object.Get()));
    EXPECT_EQ(FileContent(folder.Path("object.zDat6")), SavedBytes(object.Get()));
}

TEST_P(Saved_object, comes_back_from_its_clone_as_it_was)
{
    const Object object = GetParam().make();
    Object loaded;
    ASSERT_EQ(Load(loaded.Out(), SavedBytes(CloneOf(object.Get()).Get()), nullptr), zOK);
    EXPECT_EQ(Shown(CloneOf(loaded.Get()).Get()), Shown(object.Get()));
}

TEST_P(Saved_object, is_refused_when_cut_at_any_byte_or_followed_by_one)
{
    const std::string bytes = SavedBytes(GetParam().make().Get());
    for (std::size_t length = 0; length < bytes.size(); length += StepThrough(bytes))
    {
        SCOPED_TRACE(length);
        ExpectRefused(bytes.substr(0, length));
    }
    ExpectRefused(bytes + '\0');
}

TEST_P(Saved_object, is_refused_when_any_byte_is_changed)
{
    std::mt19937 random = Random();
    const std::string bytes = SavedBytes(GetParam().make().Get());
    for (std::size_t place = 0; place < bytes.size(); place += StepThrough(bytes))
    {
        SCOPED_TRACE(place);
        std::string changed = bytes;
        changed[place] = static_cast<char>(changed[place] ^ static_cast<char>(1 + random() % 255));
        ExpectRefused(changed);
    }
}

TEST_P(Saved_object, with_a_changed_bit_and_a_right_checksum_is_refused_or_usable)
{
    std::mt19937 random = Random();
    const std::string bytes = SavedBytes(GetParam().make().Get());
    // Large objects take long to be shown.
    const std::size_t step = IsSmall(bytes) ? 1 : bytes.size() / 3;
    for (std::size_t place = 0; place < bytes.size() - sizeof(z64u); place += step)
    {
        SCOPED_TRACE(place);
        std::string changed = bytes;
        changed[place] = static_cast<char>(changed[place] ^ static_cast<char>(1U << (random() % 8)));
        ExpectRefusedOrUsable(Sealed(changed));
    }
}

TEST_P(Saved_object, leaves_nothing_behind_when_a_request_or_call_of_loading_fails)
{
    const std::string bytes = SavedBytes(GetParam().make().Get());
    Object stream;
    MU_CHECK(zMemory_Construct(stream.Out(), nullptr));
    MU_CHECK(zStream_Write(stream.Get(), bytes.data(), bytes.size()));
    const auto load = [&stream](zAlloc alloc) {
        zObject object = nullptr;
        zStatus status = zStream_Seek(stream.Get(), 0, zSTREAM_BEGIN);
        status = status == zOK ? zLoad6_FromStream(&object, stream.Get(), alloc) : status;
        static_cast<void>(xzObject_DestroyImpl(object));
        return status;
    };
    WalkAllocations(load);
    ExpectCleanFailingCalls(load);
}

TEST_P(Saved_object, leaves_nothing_behind_when_a_request_or_call_of_saving_fails)
{
    const Object object = GetParam().make();
    const auto save = [&object](zAlloc alloc) {
        zMemory stream = nullptr;
        zStatus status = zMemory_Construct(&stream, alloc);
        status = status == zOK ? zSave6_ToStream(object.Get(), stream) : status;
        static_cast<void>(xzObject_DestroyImpl(stream));
        return status;
    };
    EXPECT_GT(WalkAllocations(save), 1U);
    ExpectCleanFailingCalls(save);
}

INSTANTIATE_TEST_SUITE_P(, Saved_object, testing::ValuesIn(CASES), CaseName());

TEST(Save6, Failing_calls_come_through_and_leave_no_part_of_a_file)
{
    const TemporaryFolder folder;
    const std::string path = folder.Path("object.zDat6");
    const Object object = Recording();
    EXPECT_GT(WalkFaults(-77,
                         [&] {
                             const zStatus status = zSave6(object.Get(), path.c_str());
                             EXPECT_EQ(zFile_Exists(path.c_str()), status == zOK);
                             return status;
                         }),
              50U);
}

TEST(Save6, What_is_not_to_be_saved_is_refused_and_leaves_no_file)
{
    const TemporaryFolder folder;
    const std::string path = folder.Path("object.zDat6");
    const CountingAlloc unsaved;
    EXPECT_EQ(zSave6(unsaved.Get(), path.c_str()), zERROR_INTERFACE);
    EXPECT_EQ(zSave6(Array2(zBytes_GetType(zDAT6_MAX_RECORD + 1), 1, 1).Get(), path.c_str()), zERROR_INTERFACE);
    EXPECT_EQ(zSave6(List(zTypeOf(zString), {StampedNull()}).Get(), path.c_str()), zERROR_FORMAT);
    EXPECT_EQ(zSave6(Nested(zSAVE6_MAX_DEPTH + 1).Get(), path.c_str()), zERROR_PARAMETER);
    EXPECT_FALSE(zFile_Exists(path.c_str()));
    EXPECT_EQ(zSave6(nullptr, nullptr), zERROR_MISSING);
    EXPECT_EQ(zSave6(nullptr, folder.Path("missing/object.zDat6").c_str()), zERROR_MISSING);
    EXPECT_EQ(zSave6(nullptr, folder.Path().c_str()), zERROR_IO);
    EXPECT_EQ(zSave6_ToStream(nullptr, unsaved.Get()), zERROR_PARAMETER);
}

TEST(Save6, Items_of_a_type_that_is_not_registered_are_saved_but_not_loaded)
{
    zObject object = nullptr;
    EXPECT_EQ(Load(&object, SavedBytes(List(zTypeOf(zStream), {}).Get()), nullptr), zERROR_INTERFACE);
    EXPECT_EQ(object, nullptr);
}

TEST(Save6, A_failing_write_does_not_delete_a_device)
{
    EXPECT_EQ(zSave6(Recording().Get(), "/dev/full"), zERROR_IO);
    EXPECT_TRUE(std::filesystem::exists("/dev/full"));
}

TEST(TypeTable, Knows_a_registered_table_once_and_refuses_null)
{
    EXPECT_EQ(TaPipe_RegisterTypes(), zOK);
    EXPECT_EQ(TaPipe_RegisterTypes(), zOK);
    EXPECT_EQ(zTypeTable_Register(nullptr), zERROR_MISSING);
    EXPECT_EQ(zTypeTable_Find("zArray1"), zTypeOf(zArray1));
    EXPECT_EQ(zTypeTable_Find("zMsgSet"), zTypeOf(zMsgSet));
    EXPECT_EQ(zTypeTable_Find("TvSurfaceMsg"), zTypeOf(TvSurfaceMsg));
    EXPECT_EQ(zTypeTable_Find("TpGraphic"), zTypeOf(TpGraphic));
    EXPECT_EQ(zTypeTable_Find("TvSurface"), nullptr);
    EXPECT_EQ(zTypeTable_Find(""), nullptr);
}

TEST(Load6, Missing_files_null_handles_and_other_handles_are_refused)
{
    const TemporaryFolder folder;
    Object loaded;
    EXPECT_EQ(zLoad6(loaded.Out(), folder.Path("none.zDat6").c_str(), nullptr), zERROR_MISSING);
    EXPECT_EQ(zLoad6(loaded.Out(), nullptr, nullptr), zERROR_MISSING);
    EXPECT_EQ(zLoad6(nullptr, folder.Path("none.zDat6").c_str(), nullptr), zERROR_MISSING);
    EXPECT_EQ(zLoad6_FromStream(nullptr, Text("").Get(), nullptr), zERROR_MISSING);
    EXPECT_EQ(zLoad6_FromStream(loaded.Out(), Text("").Get(), nullptr), zERROR_PARAMETER);
}

namespace
{
const std::string EMPTY_LIST = Name("zArrayList") + Name("z8u") + Number(1) + Number(0);
const std::string NO_POINTS = Name("zArray1") + Name("zPoint3d32f") + Number(12) + Number(0);

std::string Real(z64f value)
{
    return Number(std::bit_cast<z64u>(value));
}

std::string PointSet(const std::string& points, z64u shape = 0, z64u color = 0)
{
    return Name("TpGraphicPointSet") + Real(1) + Number(shape) + Number(color) + points;
}

std::string PlaneAt(z64f distance)
{
    return Name("TpGraphicPlane") + Real(0) + Real(0) + Real(1) + Real(distance);
}
} // namespace

TEST(Load6, Each_kind_of_bad_content_has_its_status)
{
    const struct
    {
        const char* name;
        std::string bytes;
        zStatus status;
    } cases[] = {
        {"empty", "", zERROR_END},
        {"other magic", std::string(40, 'x'), zERROR_FORMAT},
        {"other version", Container(Name(""), 2), zERROR_VERSION},
        {"wrong checksum", Container(Name("")), zERROR_FORMAT},
        {"bytes behind the object", Container(Name("") + "x"), zERROR_FORMAT},
        {"unknown type", Container(Name("zNothing")), zERROR_INTERFACE},
        {"abstract type", Container(Name("zObject")), zERROR_INTERFACE},
        {"name too long", Container(Name(std::string(65, 'z'))), zERROR_FORMAT},
        {"text longer than the file", Container(Name("zString") + Number(1'000'000)), zERROR_END},
        {"text with a null character", Container(Name("zString") + Name(std::string(1, '\0'))), zERROR_FORMAT},
        {"array beyond the file", Container(Name("zArray1") + Name("z64f") + Number(8) + Number(1ULL << 60U)),
         zERROR_END},
        {"list beyond the file", Container(Name("zArrayList") + Name("zString") + Number(8) + Number(1ULL << 60U)),
         zERROR_END},
        {"array that overflows",
         Container(Name("zArray2") + Name("z64f") + Number(8) + Number(1ULL << 33U) + Number(1ULL << 33U)),
         zERROR_FORMAT},
        {"item of another size", Container(Name("zArray1") + Name("z64f") + Number(4) + Number(0)), zERROR_INTERFACE},
        {"record too large", Container(Name("zArray1") + Name("zBytes") + Number(4097) + Number(0)), zERROR_INTERFACE},
        {"record of no size", Container(Name("zArray1") + Name("zBytes") + Number(0) + Number(0)), zERROR_INTERFACE},
        {"item of another type",
         Container(Name("zArrayList") + Name("zString") + Number(8) + Number(1) + Name("zArray1") + Name("")),
         zERROR_FORMAT},
        {"root with a parent", Container(Name("zDataTree") + Number(1) + Number(1) + Number(0) + Number(0)),
         zERROR_FORMAT},
        {"item without a name", Container(Name("zDataTree") + Number(1) + Number(0) + Number(0) + Number(0)),
         zERROR_FORMAT},
        {"linked list beyond the file", Container(Name("zList") + Name("z8u") + Number(1) + Number(100)), zERROR_END},
        {"linked item of another type",
         Container(Name("zList") + Name("zString") + Number(8) + Number(1) + EMPTY_LIST + Number(0)), zERROR_FORMAT},
        {"queue beyond the file", Container(Name("zQueue") + Name("zString") + Number(8) + Number(1ULL << 61U)),
         zERROR_END},
        {"queued item of another type",
         Container(Name("zQueue") + Name("zString") + Number(8) + Number(2) + Name("") + EMPTY_LIST), zERROR_FORMAT},
        {"image of objects", Container(Name("zImage") + Name("zString") + Number(8) + Number(0) + Number(0)),
         zERROR_FORMAT},
        {"image beyond the file", Container(Name("zImage") + Name("z16u") + Number(2) + Number(1'000) + Number(1'000)),
         zERROR_END},
        {"image that overflows",
         Container(Name("zImage") + Name("z16u") + Number(2) + Number(1ULL << 33U) + Number(1ULL << 33U)),
         zERROR_FORMAT},
        {"image whose rows overflow",
         Container(Name("zImage") + Name("z16u") + Number(2) + Number(0) + Number(1ULL << 63U)), zERROR_FORMAT},
        {"more elements than the file has", Container(Name("TpGraphic") + Number(1'000)), zERROR_END},
        {"null element", Container(Name("TpGraphic") + Number(1) + Number(0)), zERROR_FORMAT},
        {"element that is none", Container(Name("TpGraphic") + Number(1) + EMPTY_LIST), zERROR_FORMAT},
        {"abstract element", Container(Name("TpGraphic") + Number(1) + Name("TpGraphicRegion")), zERROR_INTERFACE},
        {"no points", Container(PointSet(Name(""))), zERROR_FORMAT},
        {"points of another type", Container(PointSet(Name("zArray1") + Name("z8u") + Number(1) + Number(0))),
         zERROR_FORMAT},
        {"points in another kind of list", Container(PointSet(EMPTY_LIST)), zERROR_FORMAT},
        {"shape beyond 32 bits", Container(PointSet(NO_POINTS, 1ULL << 31U)), zERROR_FORMAT},
        {"colour beyond 32 bits", Container(PointSet(NO_POINTS, 0, 1ULL << 32U)), zERROR_FORMAT},
        {"text that is none", Container(Name("TpGraphicLabel") + Real(0) + Real(0) + Real(0) + EMPTY_LIST),
         zERROR_FORMAT},
        {"size between two single ones", Container(PlaneAt(0.1)), zERROR_FORMAT},
        {"size beyond all single ones", Container(PlaneAt(1e300)), zERROR_FORMAT},
        {"type of position beyond 32 bits", Container(Name("TpGraphicPosition") + Number(1ULL << 40U) + Real(0)),
         zERROR_FORMAT},
    };
    for (const auto& [name, bytes, status] : cases)
    {
        SCOPED_TRACE(name);
        const CountingAlloc alloc;
        zObject object = nullptr;
        EXPECT_EQ(Load(&object, bytes, alloc.Get()), status);
        EXPECT_EQ(object, nullptr);
        EXPECT_EQ(alloc.LiveBlocks(), 0U);
        // What the file has not is found out before memory is asked for.
        EXPECT_TRUE(status != zERROR_END || alloc.Requests() == 0) << alloc.Requests();
    }
}

TEST(Load6, Objects_deeper_than_64_are_refused_however_many_there_are)
{
    std::string content;
    for (int i = 0; i < 100'000; ++i)
    {
        content += Name("zArrayList") + Name("zObject") + Number(8) + Number(1);
    }
    zObject object = nullptr;
    EXPECT_EQ(Load(&object, Container(content + Name("")), nullptr), zERROR_FORMAT);
}

TEST(Load6, Graphics_written_by_hand_are_read)
{
    const std::string points = Name("zArray1") + Name("zPoint3d32f") + Number(12) + Number(1) +
                               std::string("\0\0\x80\x3F\0\0\0\xC0\0\0\0\0", 12);
    const std::string label = Name("TpGraphicLabel") + Real(1) + Real(2) + Real(3) + Name("zString") + Name("text");
    Object graphic;
    ASSERT_EQ(Load(graphic.Out(),
                   Sealed(Container(Name("TpGraphic") + Number(3) + PointSet(points, 2, 0xFF00FF00U) + label +
                                    PlaneAt(-2.5))),
                   nullptr),
              zOK);
    EXPECT_EQ(Shown(graphic.Get()),
              "TpGraphic{points 1 2 4278255360 (1, -2, 0);label 'text' (1, 2, 3);plane (0, 0, 1) -2.5;}");
}

TEST(Load6, A_linked_list_has_room_for_its_items_only)
{
    const CountingAlloc alloc;
    zObject list = nullptr;
    const std::string item(zDAT6_MAX_RECORD, 'x');
    const std::string content = Name("zList") + Name("zBytes") + Number(item.size()) + Number(1) + item;
    ASSERT_EQ(Load(&list, Sealed(Container(content)), alloc.Get()), zOK);
    EXPECT_LT(alloc.LiveBytes(), item.size() + 500);
    EXPECT_EQ(xzObject_DestroyImpl(list), zOK);
}
