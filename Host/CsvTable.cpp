#include <Host/CsvTable.h>

#include <Host/Error.h>
#include <Host/ScanFile.h>
#include <Host/TextLines.h>

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <string>
#include <string_view>

namespace Mu::Host
{
namespace
{
constexpr double noNumber = std::numeric_limits<double>::quiet_NaN();

/// The lines of data of a text, from the first one on.
class DataLines
{
public:
    explicit DataLines(const CsvSource& from)
        : source(from)
        , lines(from.file)
        , mark(from.dialect.mark)
    {
    }

    /// Goes to the next line; false at the end.
    bool Next()
    {
        std::optional<std::string_view> next;
        do
        {
            next = lines.Next();
        } while (next && (lines.Number() < source.dialect.firstLine || IsIdleLine(*next)));
        line = next.value_or(std::string_view());
        return next.has_value();
    }

    [[nodiscard]] CsvFields Fields() const
    {
        return {line, source.dialect.separator};
    }

    [[nodiscard]] std::uint64_t Number() const
    {
        return lines.Number();
    }

    /// @throws Error  unless the line had as many fields as it must
    void RequireFields(std::size_t count) const
    {
        if (count != source.dialect.fieldCount)
        {
            throw Error(source.file, fmt::format("line {}", Number()),
                        fmt::format("{} field{}, where line {} has {}", count, count == 1 ? "" : "s",
                                    source.dialect.firstLine, source.dialect.fieldCount),
                        "Give all lines of data the same fields, or remove those that are no data");
        }
    }

    /// The number of a field; not a number if it is empty or not finite.
    /// @param column  from 0
    double Read(std::string_view field, std::size_t column)
    {
        const CsvValue value = ReadCsvField(field, mark);
        if (value.kind == CsvKind::Number)
        {
            return std::isfinite(value.number) ? value.number : noNumber;
        }
        if (value.kind != CsvKind::Empty)
        {
            Refuse(field, column, value.kind);
        }
        return noNumber;
    }

    /// The same of a height.
    double ReadHeight(std::string_view field, std::size_t column)
    {
        const double height = Read(field, column);
        return height == source.invalid ? noNumber : height;
    }

    std::uint8_t ReadIntensity(std::string_view field, std::size_t column)
    {
        const double value = Read(field, column);
        if (std::isnan(value))
        {
            return 0;
        }
        if (value < 0 || value > std::numeric_limits<std::uint8_t>::max())
        {
            throw Error(source.file, PlaceOf(column), fmt::format("{} is no intensity", Quoted(field)),
                        "Give intensities from 0 to 255, or leave the column out");
        }
        return static_cast<std::uint8_t>(std::lround(value));
    }

private:
    [[nodiscard]] std::size_t FieldCount() const
    {
        CsvFields fields = Fields();
        std::size_t count = 0;
        for (std::string_view field; fields.Next(field);)
        {
            ++count;
        }
        return count;
    }

    [[nodiscard]] std::string PlaceOf(std::size_t column) const
    {
        return fmt::format("line {}, column {}", Number(), column + 1);
    }

    [[noreturn]] void Refuse(std::string_view field, std::size_t column, CsvKind kind) const
    {
        RequireFields(FieldCount());
        if (kind == CsvKind::TooLarge)
        {
            throw Error(source.file, PlaceOf(column), fmt::format("{} is beyond the range of numbers", Quoted(field)),
                        "Leave the field empty where nothing was measured");
        }
        throw Error(source.file, PlaceOf(column), fmt::format("{} is not a number", Quoted(field)),
                    "Leave the field empty where nothing was measured; separate fields by semicolons, tabs, commas or "
                    "blanks, the same everywhere");
    }

    const CsvSource& source;
    TextLines lines;
    std::string_view line;
    DecimalMark mark;
};

/// What a column is read into.
enum class Target : std::uint8_t
{
    None,
    X,
    Y,
    Z,
    Intensity
};

std::vector<Target> TargetsOf(const CsvRoles& roles, std::size_t fieldCount)
{
    std::vector<Target> targets(fieldCount, Target::None);
    const auto set = [&](std::optional<std::size_t> column, Target target) {
        if (column)
        {
            targets.at(*column) = target;
        }
    };
    set(roles.x, Target::X);
    set(roles.y, Target::Y);
    set(roles.z, Target::Z);
    set(roles.intensity, Target::Intensity);
    return targets;
}

/// A place, with its digits if it has any.
double ReadPlace(DataLines& lines, std::string_view field, std::size_t column, PrintedDigits& digits)
{
    const double place = lines.Read(field, column);
    if (!std::isnan(place))
    {
        digits.Add(field);
    }
    return place;
}

void ReadLine(DataLines& lines, const std::vector<Target>& targets, CsvSamples& samples)
{
    CsvFields fields = lines.Fields();
    std::size_t column = 0;
    for (std::string_view field; fields.Next(field); ++column)
    {
        switch (column < targets.size() ? targets[column] : Target::None)
        {
        case Target::X:
            samples.x.push_back(ReadPlace(lines, field, column, samples.xDigits));
            break;
        case Target::Y:
            samples.y.push_back(ReadPlace(lines, field, column, samples.yDigits));
            break;
        case Target::Z:
            samples.z.push_back(lines.ReadHeight(field, column));
            break;
        case Target::Intensity:
            samples.intensity.push_back(lines.ReadIntensity(field, column));
            break;
        case Target::None:
            break;
        }
    }
    lines.RequireFields(column);
}

[[noreturn]] void RefuseSize(const CsvSource& source, const DataLines& lines)
{
    throw Error(
        source.file, fmt::format("line {}", lines.Number()),
        fmt::format("there are too many samples (at most {} in all, {} along a side)", maxSampleCount, maxSideLength),
        "Export a smaller part of the scan");
}

/// Appends the heights of a line and tells whether it ended in a separator.
bool ReadRow(DataLines& lines, std::vector<double>& heights)
{
    CsvFields fields = lines.Fields();
    std::size_t column = 0;
    bool endsEmpty = false;
    for (std::string_view field; fields.Next(field); ++column)
    {
        heights.push_back(lines.ReadHeight(field, column));
        endsEmpty = field.empty();
    }
    lines.RequireFields(column);
    return endsEmpty;
}

void RemoveLastColumn(CsvMatrix& matrix)
{
    for (std::size_t row = 1; row < matrix.rows; ++row)
    {
        const auto from = matrix.heights.begin() + static_cast<std::ptrdiff_t>(row * matrix.columns);
        std::copy_n(from, matrix.columns - 1, from - static_cast<std::ptrdiff_t>(row));
    }
    matrix.columns -= 1;
    matrix.heights.resize(matrix.columns * matrix.rows);
}
} // namespace

std::uint64_t CsvSamples::LineOf(std::size_t sample) const
{
    const auto behind = std::ranges::upper_bound(lineRuns, sample, {}, &std::pair<std::size_t, std::uint64_t>::first);
    const auto& [first, line] = *std::prev(behind);
    return line + (sample - first);
}

CsvSamples ReadCsvSamples(const CsvSource& source, const CsvRoles& roles)
{
    const auto targets = TargetsOf(roles, source.dialect.fieldCount);
    CsvSamples samples;
    DataLines lines(source);
    std::uint64_t expected = 0;
    for (std::size_t count = 0; lines.Next(); ++count)
    {
        if (count == maxSampleCount)
        {
            RefuseSize(source, lines);
        }
        if (lines.Number() != expected)
        {
            samples.lineRuns.emplace_back(count, lines.Number());
        }
        expected = lines.Number() + 1;
        ReadLine(lines, targets, samples);
    }
    if (samples.lineRuns.empty())
    {
        throw Error(source.file, "", "the file changed while it was read", "Read it again");
    }
    return samples;
}

CsvMatrix ReadCsvMatrix(const CsvSource& source)
{
    CsvMatrix matrix;
    matrix.columns = source.dialect.fieldCount;
    DataLines lines(source);
    bool emptyEnd = matrix.columns > 1;
    while (lines.Next())
    {
        ++matrix.rows;
        if (matrix.rows > maxSideLength || matrix.columns > maxSideLength + 1 || matrix.heights.size() > maxSampleCount)
        {
            RefuseSize(source, lines);
        }
        emptyEnd = ReadRow(lines, matrix.heights) && emptyEnd;
    }
    if (emptyEnd)
    {
        RemoveLastColumn(matrix);
        matrix.hadEmptyEnd = true;
    }
    static_cast<void>(CheckedSampleCount(source.file, "rows and columns", matrix.columns, matrix.rows));
    return matrix;
}
} // namespace Mu::Host
