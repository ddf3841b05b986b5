#include <Support/CountingAlloc.h>
#include <Support/Entry.h>
#include <Support/Require.h>

#include <zApi/zApi.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>
#include <string>
#include <vector>

// A serializer is held against a model that is a string and a position. An input has: a byte of format, a byte that
// says how many bytes follow the data, the number of steps, three bytes for each step, and the data.

namespace
{
using Support::CountingAlloc;

constexpr char UNTOUCHED = '\xA5';
/// The serializer's own buffer, and a stream that grows by copying itself.
constexpr std::size_t PEAK_BASE = std::size_t{20} << 10U;
constexpr std::size_t PEAK_PER_BYTE = 4;
constexpr std::size_t MOST_STEPS = 64;
/// From here on no stream of a run has as many bytes, so that the place to read them to need not be there.
constexpr std::size_t BEYOND_EVERY_STREAM = std::size_t{16} << 20U;

/// Hands out bytes of the input; 0 behind its end.
class Bytes
{
public:
    Bytes(const std::uint8_t* first, std::size_t size)
        : next(first)
        , end(first + size)
    {
    }

    std::uint8_t Take()
    {
        return next == end ? std::uint8_t{0} : *next++;
    }

    [[nodiscard]] std::string Rest() const
    {
        return {next, end};
    }

private:
    const std::uint8_t* next;
    const std::uint8_t* end;
};

struct Step
{
    std::uint8_t operation;
    std::uint8_t kind;
    std::uint8_t amount;
};

/// What the input says: the format, the content of the stream and what is to be done.
struct Plan
{
    zSerializerFormat format;
    std::string content;
    std::vector<Step> steps;
};

/// Bytes of which no two neighbours are the same.
std::string Filling(std::size_t size)
{
    std::string filling(size, '\0');
    std::ranges::generate(filling, [byte = 7U]() mutable { return static_cast<char>(byte += 131); });
    return filling;
}

Plan Read(Bytes bytes)
{
    Plan plan;
    const std::uint8_t format = bytes.Take();
    plan.format.sizeBytes = (format & 1U) == 0 ? 4 : 8;
    plan.format.byteOrder = (format & 2U) == 0 ? zBYTE_ORDER_LITTLE : zBYTE_ORDER_BIG;
    const std::size_t following = std::size_t{bytes.Take() % 128U} << 8U;
    plan.steps.resize(bytes.Take() % MOST_STEPS);
    for (Step& step : plan.steps)
    {
        step.operation = bytes.Take();
        step.kind = bytes.Take();
        step.amount = bytes.Take();
    }
    plan.content = bytes.Rest();
    plan.content += Filling(following);
    return plan;
}

std::size_t ItemSize(std::uint8_t kind)
{
    constexpr std::array<std::size_t, 16> sizes = {1, 2, 4, 8, 1, 2, 4,  8,
                                                   2, 4, 8, 8, 0, 3, 16, std::numeric_limits<std::size_t>::max()};
    return sizes[kind % sizes.size()];
}

/// A number of items to read: few, enough for the ways around the buffer, or so many that the bytes are beyond all
/// bounds or overflow.
std::size_t ReadCount(std::uint8_t amount)
{
    constexpr std::array<std::size_t, 6> far = {std::size_t{1} << 32U,       std::size_t{1} << 60U,
                                                std::size_t{1} << 61U,       (std::size_t{1} << 61U) + 1,
                                                (std::size_t{1} << 63U) - 1, std::numeric_limits<std::size_t>::max()};
    constexpr std::size_t near = 256 - far.size();
    if (amount >= near)
    {
        return far[amount - near];
    }
    return amount < 100 ? amount : (amount - std::size_t{99}) * 61;
}

/// The status for a run of primitives before it comes to the stream.
zStatus RunStatus(const void* items, std::size_t itemSize, std::size_t count)
{
    if (itemSize != 1 && itemSize != 2 && itemSize != 4 && itemSize != 8)
    {
        return zERROR_FORMAT;
    }
    if (count > std::numeric_limits<std::size_t>::max() / itemSize)
    {
        return zERROR_PARAMETER;
    }
    return items == nullptr && count > 0 ? zERROR_MISSING : zOK;
}

/// Runs a plan on a serializer and on the model.
class Run
{
public:
    Run(const Plan& plan, zAlloc allocator)
        : alloc(allocator)
        , format(plan.format)
        , content(plan.content)
    {
        MU_REQUIRE(zMemory_Construct(&stream, alloc) == zOK);
        MU_REQUIRE(zStream_Write(stream, content.data(), content.size()) == zOK);
        MU_REQUIRE(zStream_Seek(stream, 0, zSTREAM_BEGIN) == zOK);
        MU_REQUIRE(zSerializer_Construct(&serializer, stream, &format, alloc) == zOK);
    }

    Run(const Run&) = delete;
    Run& operator=(const Run&) = delete;

    ~Run()
    {
        CheckStream();
        CheckContent();
        MU_REQUIRE(xzObject_DestroyImpl(serializer) == zOK);
        MU_REQUIRE(xzObject_DestroyImpl(stream) == zOK);
    }

    void Do(const Step& step)
    {
        constexpr std::array operations = {&Run::ReadRun,  &Run::ReadSize, &Run::WriteRun,  &Run::WriteSize,
                                           &Run::ReadNull, &Run::Skip,     &Run::FlushOnly, &Run::BeginAnew};
        (this->*operations[step.operation % operations.size()])(step);
    }

    [[nodiscard]] std::size_t Length() const
    {
        return content.size();
    }

private:
    [[nodiscard]] std::size_t Left() const
    {
        return content.size() - position;
    }

    /// The next `size` bytes, as the machine has the items.
    [[nodiscard]] std::string Next(std::size_t size, std::size_t itemSize) const
    {
        std::string items = content.substr(position, size);
        Turn(items, itemSize);
        return items;
    }

    void Turn(std::string& items, std::size_t itemSize) const
    {
        if (format.byteOrder == zBYTE_ORDER_BIG)
        {
            for (auto item = items.begin(); item != items.end(); item += static_cast<std::ptrdiff_t>(itemSize))
            {
                std::reverse(item, item + static_cast<std::ptrdiff_t>(itemSize));
            }
        }
    }

    void ReadRun(const Step& step)
    {
        const std::size_t itemSize = ItemSize(step.kind);
        const std::size_t count = ReadCount(step.amount);
        const bool isBeyond = itemSize == 0 || count > BEYOND_EVERY_STREAM / itemSize;
        const std::size_t room = isBeyond ? 16 : count * itemSize;
        std::string items(room, UNTOUCHED);
        zStatus expected = RunStatus(items.data(), itemSize, count);
        expected = expected == zOK && (isBeyond || room > Left()) ? zERROR_END : expected;
        MU_REQUIRE(xzSerializer_ReadPrimitives(serializer, items.data(), itemSize, count) == expected);
        if (expected == zOK)
        {
            MU_REQUIRE(items == Next(room, itemSize));
            position += room;
        }
        else
        {
            MU_REQUIRE(items == std::string(room, UNTOUCHED));
        }
    }

    void ReadSize(const Step& /*step*/)
    {
        constexpr std::size_t before = 0xA5A5A5A5A5A5A5A5U;
        const std::size_t width = format.sizeBytes;
        std::size_t size = before;
        const bool isThere = width <= Left();
        MU_REQUIRE(xzSerializer_ReadSize(serializer, &size) == (isThere ? zOK : zERROR_END));
        MU_REQUIRE(size == (isThere ? SizeOf(Next(width, width)) : before));
        position += isThere ? width : 0;
    }

    static std::size_t SizeOf(const std::string& field)
    {
        std::size_t size = 0;
        for (std::size_t i = field.size(); i > 0; --i)
        {
            size = size << 8U | static_cast<unsigned char>(field[i - 1]);
        }
        return size;
    }

    void WriteRun(const Step& step)
    {
        const std::size_t itemSize = ItemSize(step.kind);
        const std::size_t count = std::size_t{step.amount} * 5;
        std::string items = Filling(itemSize > 8 ? 0 : itemSize * count);
        const zStatus expected = RunStatus(items.data(), itemSize, count);
        MU_REQUIRE(xzSerializer_WritePrimitives(serializer, items.data(), itemSize, count) == expected);
        if (expected == zOK)
        {
            Turn(items, itemSize);
            Put(items);
        }
    }

    void WriteSize(const Step& step)
    {
        const std::size_t size = std::size_t{step.amount} << (step.kind % 57U);
        const bool fits = format.sizeBytes == 8 || size <= std::numeric_limits<z32u>::max();
        MU_REQUIRE(xzSerializer_WriteSize(serializer, size) == (fits ? zOK : zERROR_PARAMETER));
        if (fits)
        {
            std::string field;
            for (std::size_t i = 0; i < format.sizeBytes; ++i)
            {
                field += static_cast<char>(size >> (8 * i));
            }
            Turn(field, field.size());
            Put(field);
        }
    }

    void Put(const std::string& bytes)
    {
        content.replace(position, std::min(bytes.size(), Left()), bytes);
        position += bytes.size();
    }

    void ReadNull(const Step& step)
    {
        const std::size_t itemSize = ItemSize(step.kind);
        const std::size_t count = ReadCount(step.amount);
        const zStatus expected = RunStatus(nullptr, itemSize, count);
        MU_REQUIRE(xzSerializer_ReadPrimitives(serializer, nullptr, itemSize, count) == expected);
        MU_REQUIRE(xzSerializer_ReadSize(serializer, nullptr) == zERROR_MISSING);
        MU_REQUIRE(xzSerializer_ReadPrimitives(nullptr, nullptr, itemSize, count) == zERROR_PARAMETER);
    }

    /// Moves the stream to another place, which a flush allows.
    void Skip(const Step& step)
    {
        CheckStream();
        position = (std::size_t{step.kind} << 8U | step.amount) % (content.size() + 1);
        MU_REQUIRE(zStream_Seek(stream, static_cast<z64s>(position), zSTREAM_BEGIN) == zOK);
    }

    void FlushOnly(const Step& /*step*/)
    {
        CheckStream();
    }

    /// The end of a serializer, too, leaves the stream where it should be.
    void BeginAnew(const Step& /*step*/)
    {
        MU_REQUIRE(xzObject_DestroyImpl(serializer) == zOK);
        MU_REQUIRE(zStream_Tell(stream) == position);
        MU_REQUIRE(zSerializer_Construct(&serializer, stream, &format, alloc) == zOK);
    }

    void CheckStream()
    {
        MU_REQUIRE(xzSerializer_FlushEx(serializer, 1) == zOK);
        MU_REQUIRE(zStream_Tell(stream) == position);
        MU_REQUIRE(zMemory_Length(stream) == content.size());
    }

    void CheckContent()
    {
        MU_REQUIRE(content.empty() || std::memcmp(content.data(), zMemory_At(stream, 0), content.size()) == 0);
    }

    zAlloc alloc;
    zSerializerFormat format;
    zMemory stream = nullptr;
    zSerializer serializer = nullptr;
    std::string content;
    std::size_t position = 0;
};
} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    const Plan plan = Read(Bytes(bytes, size));
    const CountingAlloc alloc;
    {
        Run run(plan, alloc.Get());
        std::ranges::for_each(plan.steps, [&run](const Step& step) { run.Do(step); });
        MU_REQUIRE(alloc.PeakBytes() <= PEAK_BASE + PEAK_PER_BYTE * run.Length());
    }
    MU_REQUIRE(alloc.LiveBlocks() == 0);
    return 0;
}
