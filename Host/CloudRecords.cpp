#include <Host/CloudRecords.h>

#include <Host/Error.h>

#include <fmt/format.h>

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cmath>
#include <limits>
#include <utility>

namespace Mu::Host
{
namespace
{
constexpr std::size_t longestLine = std::size_t{1} << 20U;
constexpr std::size_t bytesAtOnce = std::size_t{1} << 17U;
constexpr std::size_t firstBrightness = 3;
constexpr std::string_view copyAgain = "The file is truncated or damaged: copy or export it again";

bool IsEqual(std::string_view one, std::string_view other)
{
    return one == other;
}

bool IsEqualInAnyCase(std::string_view one, std::string_view other)
{
    return std::ranges::equal(
        one, other, [](unsigned char left, unsigned char right) { return std::tolower(left) == std::tolower(right); });
}

bool IsBlank(char character)
{
    return character == ' ' || character == '\t';
}

bool IsBlankLine(std::string_view line)
{
    return std::ranges::all_of(line, IsBlank);
}

/// The values of a line of text, one after the other.
class LineValues
{
public:
    LineValues(const BlockReader& lineReader, std::string_view line)
        : reader(lineReader)
        , at(line.data())
        , end(line.data() + line.size())
    {
    }

    /// The next value as the nearest number of that type. Infinite if it is beyond the range of the type, whatever the
    /// locale; 0 if it is too small.
    template <typename Number>
    Number Next()
    {
        RequireMore();
        const char* const start = at;
        // A plus is usual in text, but not in what std::from_chars takes.
        at += *at == '+' && end - at > 1 && at[1] != '-' ? 1 : 0;
        Number number = 0;
        const auto [stop, failure] = std::from_chars(at, end, number);
        if (failure == std::errc::invalid_argument || (stop != end && !IsBlank(*stop)))
        {
            RefuseText(start);
        }
        at = stop;
        return failure == std::errc() ? number : OutOfRange<Number>(std::string_view(start, stop));
    }

    void Skip(std::uint64_t count)
    {
        for (; count > 0; --count)
        {
            RequireMore();
            at = std::find_if(at, end, IsBlank);
        }
    }

    void RequireNoMore()
    {
        SkipBlanks();
        if (at != end)
        {
            Refuse("the line has more values than the header tells of");
        }
    }

    [[noreturn]] void Refuse(std::string_view problem) const
    {
        throw Error(reader.File(), fmt::format("line {}", reader.LineNumber()), problem, copyAgain);
    }

private:
    template <typename Number>
    static Number OutOfRange(std::string_view text)
    {
        // Numbers are written beyond the range of doubles with an exponent, whose sign tells on which side.
        const bool isTiny = text.find("e-") != text.npos || text.find("E-") != text.npos;
        return isTiny ? Number{0} : std::numeric_limits<Number>::infinity();
    }

    void SkipBlanks()
    {
        at = std::find_if_not(at, end, IsBlank);
    }

    void RequireMore()
    {
        SkipBlanks();
        if (at == end)
        {
            Refuse("the line has fewer values than the header tells of");
        }
    }

    [[noreturn]] void RefuseText(const char* start) const
    {
        const std::string text = Quoted(std::string_view(start, std::find_if(start, end, IsBlank)));
        throw Error(reader.File(), fmt::format("line {}", reader.LineNumber()), text + " is not a number",
                    "Write numbers as in -1.25e3 or nan, or copy or export the file again");
    }

    const BlockReader& reader;
    const char* at;
    const char* end;
};

/// A line that is not blank. Blank ones between records are passed over.
std::string_view NextRecordLine(BlockReader& reader)
{
    for (;;)
    {
        const auto line = reader.Line(longestLine);
        if (!line)
        {
            throw Error(reader.File(), fmt::format("line {}", reader.LineNumber() + 1),
                        "the file ends before all that its header tells of", copyAgain);
        }
        if (!IsBlankLine(*line))
        {
            return *line;
        }
    }
}

bool HasLists(std::span<const CloudField> fields)
{
    return std::ranges::any_of(fields, [](const CloudField& field) { return field.lengthType.has_value(); });
}

/// Bytes of the field, of a list those of its length.
std::uint64_t FixedSizeOf(const CloudField& field)
{
    return field.lengthType ? SizeOf(*field.lengthType) : std::uint64_t{SizeOf(field.type)} * field.count;
}

std::uint64_t FixedSizeOf(std::span<const CloudField> fields)
{
    std::uint64_t size = 0;
    for (const CloudField& field : fields)
    {
        size += FixedSizeOf(field);
    }
    return size;
}

void SkipList(BlockReader& reader, const CloudField& field, std::endian order)
{
    const std::uint64_t place = reader.Position();
    const double length = DecoderOf(*field.lengthType, order)(reader.Bytes(SizeOf(*field.lengthType)).data());
    if (length < 0)
    {
        throw Error(reader.File(), fmt::format("byte {}", place), fmt::format("a list cannot have {} items", length),
                    copyAgain);
    }
    reader.Skip(static_cast<std::uint64_t>(length) * SizeOf(field.type));
}

/// The luminance of three values 0 .. 255, as the table in the header has it.
float Luminance(double red, double green, double blue)
{
    return static_cast<float>(std::floor((299 * red + 587 * green + 114 * blue + 500) / 1000));
}

/// The nearest of 0 .. 255, 0 for NaN.
double ToByteRange(double value)
{
    return value > 0 ? std::min(value, 255.0) : 0.0;
}

float LuminanceOfPacked(double value)
{
    // As signed numbers, colours with an opacity of 128 or more are negative.
    constexpr double range = 4294967296.0;
    const bool isPacked = std::abs(value) < range;
    const auto bits = static_cast<std::uint32_t>(isPacked ? static_cast<std::int64_t>(value) : 0);
    return Luminance((bits >> 16U) & 255U, (bits >> 8U) & 255U, bits & 255U);
}

/// Lowest and highest of values that are not NaN; the lowest is above the highest if all are.
std::pair<double, double> FiniteRange(std::span<const float> values)
{
    double lowest = std::numeric_limits<double>::max();
    double highest = std::numeric_limits<double>::lowest();
    for (const double value : values)
    {
        lowest = std::isnan(value) ? lowest : std::min(lowest, value);
        highest = std::isnan(value) ? highest : std::max(highest, value);
    }
    return {lowest, highest};
}

/// The value as a float; what no float can be is NaN, as infinities are of no use here.
float Narrowed(double value)
{
    const bool fits = std::abs(value) <= static_cast<double>(std::numeric_limits<float>::max());
    return fits ? static_cast<float>(value) : std::numeric_limits<float>::quiet_NaN();
}
} // namespace

CloudRecords::CloudRecords(const std::filesystem::path& path, std::vector<CloudField> recordFields)
    : file(path)
{
    uses.reserve(recordFields.size());
    for (CloudField& field : recordFields)
    {
        uses.push_back({std::move(field), std::nullopt, false});
    }
    UsePositions();
    // The first that can be used is.
    static_cast<void>(UseGrey() || UsePacked() || UseColour());
    NoteIgnored();
}

/// The only field of that name, or null.
CloudRecords::Use* CloudRecords::Find(std::string_view name, bool (*isSame)(std::string_view, std::string_view))
{
    const auto hasName = [&](const Use& use) { return isSame(use.field.name, name); };
    const auto found = std::ranges::find_if(uses, hasName);
    if (found == uses.end())
    {
        return nullptr;
    }
    if (std::find_if(found + 1, uses.end(), hasName) != uses.end())
    {
        throw Error(file, "header", fmt::format("there are two fields {}", Quoted(name)),
                    "Export the file with one field of each name");
    }
    return &*found;
}

void CloudRecords::UsePositions()
{
    constexpr std::array<std::string_view, 3> names{"x", "y", "z"};
    for (std::size_t slot = 0; slot < names.size(); ++slot)
    {
        Use* const use = Find(names[slot], &IsEqual);
        if (use == nullptr || use->field.lengthType || use->field.count != 1)
        {
            throw Error(file, "header", fmt::format("points have no field {} of one number", Quoted(names[slot])),
                        "Export the file with fields x, y and z");
        }
        use->slot = slot;
    }
}

bool CloudRecords::UseGrey()
{
    for (const std::string_view name : {"intensity", "scalar_intensity"})
    {
        Use* const use = Find(name, &IsEqualInAnyCase);
        if (use != nullptr && !use->field.lengthType && use->field.count == 1)
        {
            use->slot = firstBrightness;
            brightness = use->field.type == NumberType::UInt8 ? Brightness::Grey : Brightness::Scaled;
            return true;
        }
    }
    return false;
}

bool CloudRecords::UsePacked()
{
    for (const std::string_view name : {"rgb", "rgba"})
    {
        Use* const use = Find(name, &IsEqualInAnyCase);
        if (use != nullptr && !use->field.lengthType && use->field.count == 1 && SizeOf(use->field.type) == 4)
        {
            use->slot = firstBrightness;
            use->isPackedFloat = use->field.type == NumberType::Float32;
            use->field.type = NumberType::UInt32;
            brightness = Brightness::Packed;
            notes.push_back(fmt::format("Intensities are the luminance of {}.", name));
            return true;
        }
    }
    return false;
}

bool CloudRecords::UseColour()
{
    constexpr std::array<std::string_view, 3> names{"red", "green", "blue"};
    std::array<Use*, names.size()> colours{};
    for (std::size_t i = 0; i < names.size(); ++i)
    {
        Use* const use = Find(names[i], &IsEqualInAnyCase);
        if (use == nullptr || use->field.lengthType || use->field.count != 1 || use->field.type != NumberType::UInt8)
        {
            return false;
        }
        colours[i] = use;
    }
    for (std::size_t i = 0; i < names.size(); ++i)
    {
        colours[i]->slot = firstBrightness + i;
    }
    brightness = Brightness::Colour;
    notes.emplace_back("Intensities are the luminance of red, green and blue.");
    return true;
}

void CloudRecords::NoteIgnored()
{
    constexpr std::size_t most = 8;
    std::vector<std::string> names;
    for (const Use& use : uses)
    {
        if (!use.slot)
        {
            names.push_back(Quoted(use.field.name));
        }
    }
    if (names.empty())
    {
        return;
    }
    const std::string more = names.size() > most ? fmt::format(" and {} more", names.size() - most) : "";
    names.resize(std::min(names.size(), most));
    notes.push_back(fmt::format("Fields that were ignored: {}{}.", fmt::join(names, ", "), more));
}

std::uint64_t CloudRecords::FixedSize() const
{
    std::uint64_t size = 0;
    for (const Use& use : uses)
    {
        size += FixedSizeOf(use.field);
    }
    return size;
}

/// Makes room for points whose number the header states, once the file is known to be large enough for them.
void CloudRecords::Reserve(const BlockReader& reader, std::size_t count, std::uint64_t fewestBytes)
{
    if (count > reader.Remaining() / fewestBytes)
    {
        throw Error(file, "header",
                    fmt::format("{} points cannot stand in {} bytes, which is what the file has left for them", count,
                                reader.Remaining()),
                    copyAgain);
    }
    points.reserve(count);
    brightnesses.reserve(brightness == Brightness::None ? 0 : count);
}

void CloudRecords::ReadText(BlockReader& reader, std::size_t count)
{
    // Each value takes a character, and a blank or an end of line that the last one need not have.
    std::uint64_t values = 0;
    for (const Use& use : uses)
    {
        values += use.field.lengthType ? 1 : use.field.count;
    }
    Reserve(reader, count, 2 * values - 1);
    for (std::size_t i = 0; i < count; ++i)
    {
        const std::string_view line = NextRecordLine(reader);
        ReadLine(reader, line);
    }
}

void CloudRecords::ReadLine(const BlockReader& reader, std::string_view line)
{
    LineValues text(reader, line);
    Values values{};
    for (const Use& use : uses)
    {
        if (use.slot)
        {
            values[*use.slot] =
                use.isPackedFloat ? std::bit_cast<std::uint32_t>(text.Next<float>()) : text.Next<double>();
            continue;
        }
        std::uint64_t count = use.field.count;
        if (use.field.lengthType)
        {
            const auto length = text.Next<double>();
            if (!(length >= 0 && length <= longestLine))
            {
                text.Refuse(fmt::format("a list cannot have {} items", length));
            }
            count = static_cast<std::uint64_t>(length);
        }
        text.Skip(count);
    }
    text.RequireNoMore();
    Add(values);
}

void CloudRecords::ReadBinary(BlockReader& reader, std::size_t count, std::endian order)
{
    const std::uint64_t size = FixedSize();
    Reserve(reader, count, size);
    if (std::ranges::any_of(uses, [](const Use& use) { return use.field.lengthType.has_value(); }))
    {
        return ReadWithLists(reader, count, order);
    }
    const auto stride = static_cast<std::size_t>(size);
    std::vector<Column> columns;
    std::size_t offset = 0;
    for (const Use& use : uses)
    {
        if (use.slot)
        {
            columns.push_back({offset, stride, *use.slot, DecoderOf(use.field.type, order)});
        }
        offset += static_cast<std::size_t>(FixedSizeOf(use.field));
    }
    const std::size_t most = std::max<std::size_t>(1, bytesAtOnce / stride);
    for (std::size_t left = count; left > 0;)
    {
        const std::size_t now = std::min(left, most);
        AddRecords(reader.Bytes(now * stride).data(), now, columns);
        left -= now;
    }
}

void CloudRecords::ReadColumns(std::span<const char> bytes, std::size_t count)
{
    points.reserve(count);
    brightnesses.reserve(brightness == Brightness::None ? 0 : count);
    std::vector<Column> columns;
    std::size_t offset = 0;
    for (const Use& use : uses)
    {
        const auto size = static_cast<std::size_t>(FixedSizeOf(use.field));
        if (use.slot)
        {
            columns.push_back({offset, size, *use.slot, DecoderOf(use.field.type, std::endian::little)});
        }
        offset += size * count;
    }
    AddRecords(bytes.data(), count, columns);
}

void CloudRecords::AddRecords(const char* bytes, std::size_t count, std::span<const Column> columns)
{
    Values values{};
    for (std::size_t i = 0; i < count; ++i)
    {
        for (const Column& column : columns)
        {
            values[column.slot] = column.decode(bytes + column.offset + i * column.stride);
        }
        Add(values);
    }
}

void CloudRecords::ReadWithLists(BlockReader& reader, std::size_t count, std::endian order)
{
    Values values{};
    for (std::size_t i = 0; i < count; ++i)
    {
        for (const Use& use : uses)
        {
            if (use.field.lengthType)
            {
                SkipList(reader, use.field, order);
                continue;
            }
            const char* const bytes = reader.Bytes(static_cast<std::size_t>(FixedSizeOf(use.field))).data();
            if (use.slot)
            {
                values[*use.slot] = DecoderOf(use.field.type, order)(bytes);
            }
        }
        Add(values);
    }
}

void CloudRecords::Add(const Values& values)
{
    points.push_back({values[0], values[1], values[2]});
    if (brightness != Brightness::None)
    {
        brightnesses.push_back(BrightnessOf(values));
    }
}

float CloudRecords::BrightnessOf(const Values& values) const
{
    const double first = values[firstBrightness];
    switch (brightness)
    {
    case Brightness::None:
        break;
    case Brightness::Grey:
        return static_cast<float>(std::floor(ToByteRange(first)));
    case Brightness::Scaled:
        return Narrowed(first);
    case Brightness::Packed:
        return LuminanceOfPacked(first);
    case Brightness::Colour:
        return Luminance(std::floor(ToByteRange(first)), std::floor(ToByteRange(values[firstBrightness + 1])),
                         std::floor(ToByteRange(values[firstBrightness + 2])));
    }
    return 0;
}

std::vector<std::uint8_t> CloudRecords::MakeIntensity()
{
    double lowest = 0;
    double factor = 1;
    if (brightness == Brightness::Scaled)
    {
        const auto [low, high] = FiniteRange(brightnesses);
        lowest = low;
        factor = high > low ? 255 / (high - low) : 0;
        notes.push_back(low > high ? "No intensity is finite."
                                   : fmt::format("Intensities from {} to {} became 0 to 255.", low, high));
    }
    std::vector<std::uint8_t> intensity(brightnesses.size());
    std::ranges::transform(brightnesses, intensity.begin(), [lowest, factor](float value) {
        return static_cast<std::uint8_t>(std::isnan(value) ? 0 : (value - lowest) * factor + 0.5);
    });
    return intensity;
}

PointCloud CloudRecords::Finish(std::size_t width, std::size_t height)
{
    std::vector<std::uint8_t> intensity = MakeIntensity();
    return {file, width, height, std::move(points), std::move(intensity), std::move(notes)};
}

void SkipTextRecords(BlockReader& reader, std::uint64_t count)
{
    for (; count > 0; --count)
    {
        static_cast<void>(NextRecordLine(reader));
    }
}

void SkipBinaryRecords(BlockReader& reader, std::span<const CloudField> fields, std::uint64_t count, std::endian order)
{
    if (!HasLists(fields))
    {
        const std::uint64_t size = FixedSizeOf(fields);
        // More than any file has, rather than a product beyond the range of integers.
        reader.Skip(size != 0 && count > reader.Remaining() / size ? reader.Remaining() + 1 : count * size);
        return;
    }
    for (; count > 0; --count)
    {
        for (const CloudField& field : fields)
        {
            if (field.lengthType)
            {
                SkipList(reader, field, order);
            }
            else
            {
                reader.Skip(FixedSizeOf(field));
            }
        }
    }
}
} // namespace Mu::Host
