#include <Support/CountingAlloc.h>
#include <Support/Entry.h>
#include <Support/Require.h>
#include <Support/SavedBytes.h>

#include <TaApi/Object.h>
#include <TaPipe/TpTypes.h>
#include <zApi/zApi.h>

#include <xxhash.h>

#include <algorithm>
#include <array>
#include <functional>
#include <string>

// The reader of `.zDat6` containers. An input is the content of one, an object with all that it holds; the head and the
// right checksum are put around it here, so that no input is lost on them.

namespace
{
using Object = Ta::Object<void*>;
using Support::CountingAlloc;
using Support::LoadBytes;
using Support::SavedBytes;

/// Loading asks for no more than this and `PEAK_PER_BYTE` for each byte of the file. The dearest object is a tree of
/// one item: 64 bytes of a file make a list with room for 16 items, 1.1 KB in all.
constexpr std::size_t PEAK_BASE = 4096;
constexpr std::size_t PEAK_PER_BYTE = 24;

constexpr std::size_t HEAD_SIZE = 16;
constexpr std::array LOAD_STATUSES = {zOK, zERROR_FORMAT, zERROR_END, zERROR_VERSION, zERROR_INTERFACE};

std::string Checksum(const std::string& bytes)
{
    const XXH64_hash_t checksum = XXH3_64bits(bytes.data(), bytes.size());
    return {reinterpret_cast<const char*>(&checksum), sizeof(checksum)};
}

/// What every container begins with, as the writer has it. Fails unless the writer's checksum is the one above.
std::string MadeHead()
{
    MU_CHECK(TaPipe_RegisterTypes());
    const std::string null = SavedBytes(nullptr);
    MU_REQUIRE(null.ends_with(Checksum(null.substr(0, null.size() - sizeof(z64u)))));
    return null.substr(0, HEAD_SIZE);
}

std::string Container(const std::string& content)
{
    static const std::string head = MadeHead();
    const std::string bytes = head + content;
    return bytes + Checksum(bytes);
}

/// An object has one representation only: a file that is loaded is what saving the object, or its clone, writes.
void CheckSaved(zObject object, const std::string& file, zAlloc alloc)
{
    Object clone;
    MU_REQUIRE(SavedBytes(object) == file);
    MU_REQUIRE(xzObject_CloneImpl(clone.Out(), object, alloc) == zOK);
    MU_REQUIRE(SavedBytes(clone.Get()) == file);
}

/// One of the requests for memory fails, which one the file decides: nothing comes out and nothing is left.
void CheckWithoutMemory(const std::string& file, std::size_t requests)
{
    const CountingAlloc alloc;
    zObject object = nullptr;
    alloc.FailAt(1 + std::hash<std::string>{}(file) % requests);
    MU_REQUIRE(LoadBytes(&object, file, alloc.Get()) == zERROR_MEMORY);
    MU_REQUIRE(object == nullptr);
    MU_REQUIRE(alloc.LiveBlocks() == 0);
}

void CheckFile(const std::string& file)
{
    const CountingAlloc alloc;
    zObject object = nullptr;
    const zStatus status = LoadBytes(&object, file, alloc.Get());
    const std::size_t requests = alloc.Requests();
    MU_REQUIRE(std::ranges::find(LOAD_STATUSES, status) != LOAD_STATUSES.end());
    MU_REQUIRE(alloc.PeakBytes() <= PEAK_BASE + PEAK_PER_BYTE * file.size());
    if (status == zOK)
    {
        CheckSaved(object, file, alloc.Get());
        MU_REQUIRE(xzObject_DestroyImpl(object) == zOK);
    }
    else
    {
        MU_REQUIRE(object == nullptr);
    }
    MU_REQUIRE(alloc.LiveBlocks() == 0);
    if (status == zOK && requests > 0)
    {
        CheckWithoutMemory(file, requests);
    }
}
} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    const std::string content(reinterpret_cast<const char*>(bytes), size);
    CheckFile(Container(content));
    // As it stands it is a damaged file most often, but it may have another head.
    CheckFile(content);
    return 0;
}
