#include <Host/PlyReader.h>

#include <Host/CloudRecords.h>
#include <Host/Error.h>
#include <Host/HeaderLine.h>

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <span>
#include <utility>

namespace Mu::Host
{
namespace
{
constexpr std::string_view exportAgain = "Correct the header, or export the file again";

enum class Layout
{
    Text,
    LittleEndian,
    BigEndian
};

struct Element
{
    std::string name;
    std::uint64_t count = 0;
    std::vector<CloudField> properties;
};

/// A header as far as it is read.
struct Header
{
    std::optional<Layout> layout;
    std::vector<Element> elements;
    bool isWhole = false;
};

struct NamedLayout
{
    std::string_view name;
    Layout layout;
};

constexpr std::array layouts{NamedLayout{"ascii", Layout::Text},
                             NamedLayout{"binary_little_endian", Layout::LittleEndian},
                             NamedLayout{"binary_big_endian", Layout::BigEndian}};

struct NamedType
{
    std::string_view name;
    NumberType type;
};

constexpr std::array types{NamedType{"char", NumberType::Int8},      NamedType{"int8", NumberType::Int8},
                           NamedType{"uchar", NumberType::UInt8},    NamedType{"uint8", NumberType::UInt8},
                           NamedType{"short", NumberType::Int16},    NamedType{"int16", NumberType::Int16},
                           NamedType{"ushort", NumberType::UInt16},  NamedType{"uint16", NumberType::UInt16},
                           NamedType{"int", NumberType::Int32},      NamedType{"int32", NumberType::Int32},
                           NamedType{"uint", NumberType::UInt32},    NamedType{"uint32", NumberType::UInt32},
                           NamedType{"float", NumberType::Float32},  NamedType{"float32", NumberType::Float32},
                           NamedType{"double", NumberType::Float64}, NamedType{"float64", NumberType::Float64}};

NumberType TypeOf(const HeaderLine& line, std::size_t index)
{
    const auto type = std::ranges::find(types, line.Words()[index], &NamedType::name);
    if (type == types.end())
    {
        line.RefuseWord(index, "Known are char, uchar, short, ushort, int, uint, float and double: export with these");
    }
    return type->type;
}

void ReadFormat(Header& header, const HeaderLine& line)
{
    line.RequireWords(3);
    const auto layout = std::ranges::find(layouts, line.Words()[1], &NamedLayout::name);
    if (header.layout)
    {
        line.Refuse("a second format in one header", exportAgain);
    }
    if (layout == layouts.end())
    {
        line.RefuseWord(1, "Export the file as ascii, binary_little_endian or binary_big_endian");
    }
    if (line.Words()[2] != "1.0")
    {
        line.RefuseWord(2, "Only version 1.0 is read");
    }
    header.layout = layout->layout;
}

void ReadElement(Header& header, const HeaderLine& line)
{
    line.RequireWords(3);
    const std::string& name = line.Words()[1];
    if (std::ranges::find(header.elements, name, &Element::name) != header.elements.end())
    {
        line.Refuse(fmt::format("a second element {} in one header", Quoted(name)), exportAgain);
    }
    header.elements.push_back({name, line.Count(2), {}});
}

void ReadProperty(Header& header, const HeaderLine& line)
{
    if (header.elements.empty())
    {
        line.Refuse("a property before any element", exportAgain);
    }
    const bool isList = line.Words().size() > 1 && line.Words()[1] == "list";
    line.RequireWords(isList ? 5 : 3);
    CloudField field{line.Words().back(), TypeOf(line, isList ? 3 : 1), 1, std::nullopt};
    if (isList)
    {
        field.lengthType = TypeOf(line, 2);
        if (*field.lengthType == NumberType::Float32 || *field.lengthType == NumberType::Float64)
        {
            line.RefuseWord(2, "The length of a list is a whole number: export the file with uchar or int");
        }
    }
    header.elements.back().properties.push_back(std::move(field));
}

void ReadNothing(Header& /*header*/, const HeaderLine& /*line*/) {}

void ReadEnd(Header& header, const HeaderLine& line)
{
    if (!header.layout)
    {
        line.Refuse("the header ends without a format", exportAgain);
    }
    header.isWhole = true;
}

struct Entry
{
    std::string_view key;
    void (*read)(Header&, const HeaderLine&);
};

constexpr std::array entries{Entry{"format", &ReadFormat},     Entry{"comment", &ReadNothing},
                             Entry{"obj_info", &ReadNothing},  Entry{"element", &ReadElement},
                             Entry{"property", &ReadProperty}, Entry{"end_header", &ReadEnd}};

/// Lines end as the first one does: some writers know '\r' only.
void ReadMagic(BlockReader& reader)
{
    const std::string_view start = reader.Peek(5);
    if (start.starts_with("ply\r") && !start.ends_with('\n'))
    {
        reader.EndLinesWith('\r');
    }
    const HeaderLine line(reader, "PLY");
    if (line.Key() != "ply" || line.Words().size() != 1)
    {
        line.Refuse(R"(the line is not "ply")", "Check that the file is a PLY file");
    }
}

Header ReadHeader(BlockReader& reader)
{
    ReadMagic(reader);
    Header header;
    while (!header.isWhole)
    {
        const HeaderLine line(reader, "PLY");
        if (line.Key().empty())
        {
            continue;
        }
        const auto entry = std::ranges::find(entries, line.Key(), &Entry::key);
        if (entry == entries.end())
        {
            line.Refuse(fmt::format("{} is no entry of a PLY header", Quoted(line.Key())), exportAgain);
        }
        entry->read(header, line);
    }
    return header;
}

std::endian OrderOf(Layout layout)
{
    return layout == Layout::BigEndian ? std::endian::big : std::endian::little;
}

void SkipElement(BlockReader& reader, const Element& element, Layout layout)
{
    if (element.count != 0 && element.properties.empty())
    {
        throw Error(reader.File(), "header", fmt::format("element {} has no properties", Quoted(element.name)),
                    exportAgain);
    }
    if (layout == Layout::Text)
    {
        SkipTextRecords(reader, element.count);
    }
    else
    {
        SkipBinaryRecords(reader, element.properties, element.count, OrderOf(layout));
    }
}

std::vector<std::string> NotesOn(std::span<const Element> elements)
{
    constexpr std::size_t most = 4;
    std::vector<std::string> notes;
    for (const Element& element : elements)
    {
        if (element.name != "vertex" && element.count != 0 && notes.size() < most)
        {
            notes.push_back(
                fmt::format("Element {} with {} entries was ignored.", Quoted(element.name), element.count));
        }
    }
    return notes;
}
} // namespace

Scan ReadPly(const std::filesystem::path& file, const CloudOptions& options)
{
    BlockReader reader(file);
    const Header header = ReadHeader(reader);
    const auto vertices = std::ranges::find(header.elements, "vertex", &Element::name);
    if (vertices == header.elements.end())
    {
        throw Error(file, "header", "there is no element \"vertex\"", "Export the file with points");
    }
    CloudRecords records(file, vertices->properties);
    const std::size_t count = CheckedPointCount(file, "element vertex", vertices->count, 1);
    RequireSpacingForList(file, count, 1, options);
    for (auto element = header.elements.begin(); element != vertices; ++element)
    {
        SkipElement(reader, *element, *header.layout);
    }
    if (*header.layout == Layout::Text)
    {
        records.ReadText(reader, count);
    }
    else
    {
        records.ReadBinary(reader, count, OrderOf(*header.layout));
    }
    PointCloud cloud = records.Finish(count, 1);
    const auto notes = NotesOn(header.elements);
    cloud.notes.insert(cloud.notes.begin(), notes.begin(), notes.end());
    return MakeScan(std::move(cloud), options);
}
} // namespace Mu::Host
