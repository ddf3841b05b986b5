#include <Host/PcdReader.h>

#include <Host/CloudRecords.h>
#include <Host/Error.h>
#include <Host/HeaderLine.h>
#include <Host/Lzf.h>

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

namespace Mu::Host
{
namespace
{
constexpr std::string_view exportAgain = "Correct the header, or export the file again";
constexpr std::string_view copyAgain = "The file is truncated or damaged: copy or export it again";

/// A header as far as it is read. What it does not tell is empty.
struct Header
{
    std::vector<std::string> names;
    std::vector<std::uint64_t> sizes;
    std::vector<char> letters;
    std::vector<std::uint64_t> counts;
    std::optional<std::uint64_t> width;
    std::optional<std::uint64_t> height;
    std::optional<std::uint64_t> points;
    std::string data;
    std::vector<std::string> notes;
};

void ReadVersion(Header& /*header*/, const HeaderLine& line)
{
    // Later versions only added entries, so the number decides nothing.
    line.RequireWords(2);
}

void ReadFields(Header& header, const HeaderLine& line)
{
    header.names.assign(line.Words().begin() + 1, line.Words().end());
}

std::vector<std::uint64_t> CountsOf(const HeaderLine& line)
{
    constexpr std::uint64_t most = std::uint64_t{1} << 20U;
    std::vector<std::uint64_t> counts;
    for (std::size_t i = 1; i < line.Words().size(); ++i)
    {
        counts.push_back(line.Count(i));
        if (counts.back() == 0 || counts.back() > most)
        {
            line.RefuseWord(i, exportAgain);
        }
    }
    return counts;
}

void ReadSizes(Header& header, const HeaderLine& line)
{
    header.sizes = CountsOf(line);
}

void ReadTypes(Header& header, const HeaderLine& line)
{
    for (std::size_t i = 1; i < line.Words().size(); ++i)
    {
        const std::string& word = line.Words()[i];
        if (word.size() != 1)
        {
            line.RefuseWord(i, "Known are F, I and U");
        }
        header.letters.push_back(word.front());
    }
}

void ReadCounts(Header& header, const HeaderLine& line)
{
    header.counts = CountsOf(line);
}

void ReadWidth(Header& header, const HeaderLine& line)
{
    line.RequireWords(2);
    header.width = line.Count(1);
}

void ReadHeight(Header& header, const HeaderLine& line)
{
    line.RequireWords(2);
    header.height = line.Count(1);
}

void ReadPoints(Header& header, const HeaderLine& line)
{
    line.RequireWords(2);
    header.points = line.Count(1);
}

void ReadViewpoint(Header& header, const HeaderLine& line)
{
    const std::string text = fmt::format("{}", fmt::join(line.Words().begin() + 1, line.Words().end(), " "));
    if (text != "0 0 0 1 0 0 0")
    {
        header.notes.push_back(fmt::format("The view point {} was not applied.", Quoted(text)));
    }
}

void ReadData(Header& header, const HeaderLine& line)
{
    line.RequireWords(2);
    header.data = line.Words()[1];
}

struct Entry
{
    std::string_view key;
    void (*read)(Header&, const HeaderLine&);
    bool canBeFirst;
};

// COLUMNS is what version 0.5 says for FIELDS.
constexpr std::array entries{
    Entry{"VERSION", &ReadVersion, true},      Entry{"FIELDS", &ReadFields, true},  Entry{"COLUMNS", &ReadFields, true},
    Entry{"SIZE", &ReadSizes, false},          Entry{"TYPE", &ReadTypes, false},    Entry{"COUNT", &ReadCounts, false},
    Entry{"WIDTH", &ReadWidth, false},         Entry{"HEIGHT", &ReadHeight, false}, Entry{"POINTS", &ReadPoints, false},
    Entry{"VIEWPOINT", &ReadViewpoint, false}, Entry{"DATA", &ReadData, false}};

Header ReadHeader(BlockReader& reader)
{
    constexpr std::size_t mostNotes = 4;
    Header header;
    std::array<bool, entries.size()> seen{};
    while (header.data.empty())
    {
        const HeaderLine line(reader, "PCD");
        if (line.Key().empty() || line.Key().front() == '#')
        {
            continue;
        }
        const auto entry = std::ranges::find(entries, line.Key(), &Entry::key);
        if (entry == entries.end())
        {
            if (header.notes.size() < mostNotes)
            {
                header.notes.push_back(fmt::format("{} in the header was ignored.", Quoted(line.Key())));
            }
            continue;
        }
        if (std::exchange(seen[static_cast<std::size_t>(entry - entries.begin())], true))
        {
            line.Refuse(fmt::format("a second {} in one header", entry->key), exportAgain);
        }
        entry->read(header, line);
    }
    return header;
}

struct FieldKind
{
    char letter;
    std::uint64_t size;
    NumberType type;
};

constexpr std::array fieldKinds{FieldKind{'F', 4, NumberType::Float32}, FieldKind{'F', 8, NumberType::Float64},
                                FieldKind{'I', 1, NumberType::Int8},    FieldKind{'I', 2, NumberType::Int16},
                                FieldKind{'I', 4, NumberType::Int32},   FieldKind{'I', 8, NumberType::Int64},
                                FieldKind{'U', 1, NumberType::UInt8},   FieldKind{'U', 2, NumberType::UInt16},
                                FieldKind{'U', 4, NumberType::UInt32},  FieldKind{'U', 8, NumberType::UInt64}};

void RequireValueForEachField(const std::filesystem::path& file, std::string_view key, std::size_t count,
                              std::size_t fieldCount)
{
    if (count != 0 && count != fieldCount)
    {
        throw Error(file, "header", fmt::format("{} has {} values for {} fields", key, count, fieldCount), exportAgain);
    }
}

/// The fields of a point. Version 0.5 has 32-bit floats only, and does not say so.
std::vector<CloudField> FieldsOf(const std::filesystem::path& file, const Header& header)
{
    RequireValueForEachField(file, "SIZE", header.sizes.size(), header.names.size());
    RequireValueForEachField(file, "TYPE", header.letters.size(), header.names.size());
    RequireValueForEachField(file, "COUNT", header.counts.size(), header.names.size());
    std::vector<CloudField> fields;
    for (std::size_t i = 0; i < header.names.size(); ++i)
    {
        const std::uint64_t size = header.sizes.empty() ? 4 : header.sizes[i];
        const char letter = header.letters.empty() ? 'F' : header.letters[i];
        const auto kind = std::ranges::find_if(
            fieldKinds, [=](const FieldKind& known) { return known.letter == letter && known.size == size; });
        if (kind == fieldKinds.end())
        {
            throw Error(file, "header",
                        fmt::format("field {}: there is no type {} of {} bytes", Quoted(header.names[i]),
                                    Printable(std::string_view(&letter, 1)), size),
                        "Known are F of 4 and 8 bytes, I and U of 1, 2, 4 and 8: export the file with these");
        }
        const std::uint64_t count = header.counts.empty() ? 1 : header.counts[i];
        fields.push_back({header.names[i], kind->type, static_cast<std::size_t>(count), std::nullopt});
    }
    return fields;
}

struct CloudSize
{
    std::size_t width;
    std::size_t height;
    std::size_t count;
};

CloudSize CloudSizeOf(const std::filesystem::path& file, const Header& header)
{
    if (!header.width && !header.points)
    {
        throw Error(file, "header", "neither WIDTH nor POINTS stands there", exportAgain);
    }
    const std::uint64_t width = header.width ? *header.width : *header.points;
    const std::uint64_t height = header.height.value_or(1);
    const std::size_t count = CheckedPointCount(file, "WIDTH, HEIGHT", width, height);
    if (header.points && *header.points != count)
    {
        throw Error(file, "POINTS", fmt::format("{} points are not {} x {}", *header.points, width, height),
                    exportAgain);
    }
    return {static_cast<std::size_t>(width), static_cast<std::size_t>(height), count};
}

void ReadAscii(CloudRecords& records, BlockReader& reader, std::size_t count)
{
    records.ReadText(reader, count);
}

void ReadBinary(CloudRecords& records, BlockReader& reader, std::size_t count)
{
    records.ReadBinary(reader, count, std::endian::little);
}

std::uint32_t ReadSize(BlockReader& reader)
{
    return static_cast<std::uint32_t>(DecoderOf(NumberType::UInt32, std::endian::little)(reader.Bytes(4).data()));
}

void ReadCompressed(CloudRecords& records, BlockReader& reader, std::size_t count)
{
    const std::uint64_t place = reader.Position();
    const std::uint32_t packedSize = ReadSize(reader);
    const std::uint32_t size = ReadSize(reader);
    const auto refuse = [&](const std::string& problem) {
        throw Error(reader.File(), fmt::format("byte {}", place), problem, copyAgain);
    };
    // As a quotient, as the product may be beyond the range of integers.
    if (size % count != 0 || size / count != records.FixedSize())
    {
        refuse(fmt::format("{} unpacked bytes are not {} points of {} bytes", size, count, records.FixedSize()));
    }
    if (size / bestLzf > packedSize)
    {
        refuse(fmt::format("{} packed bytes cannot hold {} bytes", packedSize, size));
    }
    const std::uint64_t start = reader.Position();
    const std::string_view packed = reader.Bytes(packedSize);
    std::vector<char> unpacked(size);
    if (const auto fault = UnpackLzf(packed, unpacked))
    {
        throw Error(reader.File(), fmt::format("byte {}", start + fault->place),
                    fmt::format("the points cannot be unpacked: {}", fault->problem), copyAgain);
    }
    records.ReadColumns(unpacked, count);
}

struct DataKind
{
    std::string_view name;
    void (*read)(CloudRecords&, BlockReader&, std::size_t);
};

constexpr std::array dataKinds{DataKind{"ascii", &ReadAscii}, DataKind{"binary", &ReadBinary},
                               DataKind{"binary_compressed", &ReadCompressed}};

const DataKind& FindDataKind(const std::filesystem::path& file, const Header& header)
{
    const auto kind = std::ranges::find(dataKinds, header.data, &DataKind::name);
    if (kind == dataKinds.end())
    {
        throw Error(file, "DATA", fmt::format("{} is not known", Quoted(header.data)),
                    "Export the file as ascii, binary or binary_compressed");
    }
    return *kind;
}
} // namespace

bool IsPcd(std::string_view start)
{
    while (!start.empty())
    {
        const std::string_view line = start.substr(0, start.find('\n'));
        start.remove_prefix(std::min(line.size() + 1, start.size()));
        const std::size_t word = line.find_first_not_of(" \t\r");
        if (word == line.npos)
        {
            continue;
        }
        if (line[word] != '#')
        {
            const std::string_view key = line.substr(word, line.find_first_of(" \t", word) - word);
            const auto entry = std::ranges::find(entries, key, &Entry::key);
            return entry != entries.end() && entry->canBeFirst;
        }
        if (line.substr(word + 1).find(".PCD") != line.npos)
        {
            return true;
        }
    }
    return false;
}

Scan ReadPcd(const std::filesystem::path& file, const CloudOptions& options)
{
    BlockReader reader(file);
    Header header = ReadHeader(reader);
    CloudRecords records(file, FieldsOf(file, header));
    const CloudSize size = CloudSizeOf(file, header);
    RequireSpacingForList(file, size.width, size.height, options);
    FindDataKind(file, header).read(records, reader, size.count);
    PointCloud cloud = records.Finish(size.width, size.height);
    if (reader.Remaining() > 0)
    {
        header.notes.push_back(fmt::format("{} bytes after the last point were ignored.", reader.Remaining()));
    }
    cloud.notes.insert(cloud.notes.begin(), header.notes.begin(), header.notes.end());
    return MakeScan(std::move(cloud), options);
}
} // namespace Mu::Host
