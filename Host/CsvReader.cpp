#include <Host/CsvReader.h>

#include <Host/CsvTable.h>
#include <Host/Error.h>
#include <Host/SampleLevels.h>
#include <Host/ScanFile.h>
#include <Host/Transposed.h>

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <span>
#include <utility>

namespace Mu::Host
{
namespace
{
constexpr double noNumber = std::numeric_limits<double>::quiet_NaN();

/// A text, what is known of it, and what is to be made of it.
struct Text
{
    const std::filesystem::path& file;
    const CsvDialect& dialect;
    const CsvOptions& options;

    [[nodiscard]] CsvSource Source() const
    {
        return {file, dialect, options.invalid};
    }

    [[noreturn]] void Refuse(std::string_view key, std::string_view problem, std::string_view remedy) const
    {
        throw Error(file, Quoted(key), problem, remedy);
    }

    template <typename Option>
    void RefuseOption(std::string_view key, const std::optional<Option>& option, std::string_view kind) const
    {
        if (option)
        {
            Refuse(key, fmt::format("{} takes no such option", kind),
                   R"(Give "unit" for columns with positions, or "spacing" for heights alone, and "layout" to choose)");
        }
    }

    void RequireUnit() const
    {
        if (!options.unitMm)
        {
            Refuse(
                "unit", "the file does not tell the unit of its lengths, nor does the job",
                fmt::format("Write {} with something like {}, or with the \"spacing\" of samples if these are rows of "
                            "heights, or give the same with the scan in the job",
                            SidecarOf(file).string(), csvExample));
        }
    }

    void RequireSpacing() const
    {
        if (!options.spacingMm)
        {
            Refuse(
                "spacing", "the file does not tell the distance of its samples, nor does the job",
                fmt::format("Write {} with something like {{\"spacing\": [0.1, 0.1, 0.001]}} (mm along x, mm along y, "
                            "mm per unit of the heights), or give the same with the scan in the job",
                            SidecarOf(file).string()));
        }
    }
};

CsvLayout LayoutOf(const Text& text)
{
    const CsvOptions& options = text.options;
    if (options.layout)
    {
        return *options.layout;
    }
    if (options.columns)
    {
        return options.columns->y ? CsvLayout::Points : CsvLayout::Profile;
    }
    if (options.spacingMm)
    {
        return CsvLayout::Grid;
    }
    const std::size_t count = text.dialect.numberColumns.size();
    if (count != 2 && count != 3)
    {
        text.Refuse("layout", fmt::format("{} columns of numbers do not tell what they are", count),
                    R"(Give "spacing", as in [0.1, 0.1, 0.001], if these are rows of heights; else give "unit", and )"
                    R"("columns" as in {"x": 1, "z": 2} or {"x": 1, "y": 2, "z": 3})");
    }
    return count == 2 ? CsvLayout::Profile : CsvLayout::Points;
}

std::size_t ColumnOf(const Text& text, const CsvColumn& column)
{
    if (const auto* const number = std::get_if<std::size_t>(&column))
    {
        if (*number > text.dialect.fieldCount)
        {
            text.Refuse("columns", fmt::format("there is no column {}", *number),
                        fmt::format("Line {} has {} columns", text.dialect.firstLine, text.dialect.fieldCount));
        }
        return *number - 1;
    }
    const auto& head = text.dialect.headFields;
    const auto& name = std::get<std::string>(column);
    const auto found = std::ranges::find(head, name);
    if (found == head.end())
    {
        const std::string known = Printable(fmt::format("{}", fmt::join(head, ", ")));
        text.Refuse("columns", fmt::format("there is no column of the name {}", Quoted(name)),
                    head.empty() ? "The file has no head line with names of columns: give their numbers, from 1"
                                 : fmt::format("The head line has: {}", known));
    }
    return static_cast<std::size_t>(found - head.begin());
}

CsvRoles RolesOf(const Text& text)
{
    const CsvColumns& columns = *text.options.columns;
    const auto find = [&](const std::optional<CsvColumn>& column) {
        return column ? std::optional(ColumnOf(text, *column)) : std::nullopt;
    };
    const CsvRoles roles{find(columns.x), find(columns.y), *find(columns.z), find(columns.intensity)};
    std::vector<std::size_t> used{roles.z};
    for (const auto& column : {roles.x, roles.y, roles.intensity})
    {
        if (column && std::ranges::find(used, *column) != used.end())
        {
            text.Refuse("columns", fmt::format("column {} is named twice", *column + 1), "Name each column once");
        }
        used.push_back(column.value_or(roles.z));
    }
    return roles;
}

[[noreturn]] void RefuseColumns(const Text& text, std::string_view kind, std::string_view example)
{
    text.Refuse(
        "columns",
        fmt::format("{} columns of numbers do not tell which are those of {}", text.dialect.numberColumns.size(), kind),
        fmt::format("Name them, as in {}", example));
}

CsvRoles ProfileRoles(const Text& text)
{
    constexpr std::string_view example = R"({"x": 1, "z": 2})";
    if (text.options.columns)
    {
        const CsvRoles roles = RolesOf(text);
        if (roles.y)
        {
            text.Refuse("columns", "a profile has no y", fmt::format("Name x and z only, as in {}", example));
        }
        return roles;
    }
    const auto& numbers = text.dialect.numberColumns;
    if (text.options.spacingMm && numbers.size() == 1)
    {
        return {{}, {}, numbers[0], {}};
    }
    if (numbers.size() != 2)
    {
        RefuseColumns(text, "a profile", example);
    }
    return {numbers[0], {}, numbers[1], {}};
}

CsvRoles PointRoles(const Text& text)
{
    constexpr std::string_view example = R"({"x": 1, "y": 2, "z": 3})";
    if (text.options.columns)
    {
        const CsvRoles roles = RolesOf(text);
        if (!roles.x || !roles.y)
        {
            text.Refuse("columns", "points have x, y and z", fmt::format("Name all three, as in {}", example));
        }
        return roles;
    }
    const auto& numbers = text.dialect.numberColumns;
    if (numbers.size() != 3)
    {
        RefuseColumns(text, "points", example);
    }
    return {numbers[0], numbers[1], numbers[2], {}};
}

constexpr std::string_view NameOf(char separator)
{
    return separator == ';' ? "semicolons" : separator == '\t' ? "tabs" : separator == ',' ? "commas" : "blanks";
}

std::vector<std::string> NotesOn(const Text& text)
{
    std::vector<std::string> notes{fmt::format("Fields are separated by {}; data begin in line {}.",
                                               NameOf(text.dialect.separator), text.dialect.firstLine)};
    if (const auto& head = text.dialect.headLines; !head.empty())
    {
        notes.push_back(
            fmt::format("Lines before the data were skipped: {}, the last one {}.", head.size(), Quoted(head.back())));
    }
    if (text.options.invalid)
    {
        notes.push_back(fmt::format("Heights of the value {} are invalid.", *text.options.invalid));
    }
    return notes;
}

/// Even and rising places of the samples of a profile, if they have such.
std::optional<EvenPlaces> FindPlaces(const CsvSamples& samples)
{
    const auto isPlace = [](double x) { return !std::isnan(x); };
    const auto first = std::ranges::find_if(samples.x, isPlace);
    const auto behind = std::find_if(samples.x.rbegin(), samples.x.rend(), isPlace).base();
    if (behind - first < 2 || !(*first < *(behind - 1)) || !std::isfinite(*(behind - 1) - *first))
    {
        return std::nullopt;
    }
    const auto anchor = [&](auto at) {
        return EvenPlaces::Anchor{static_cast<std::size_t>(at - samples.x.begin()), *at};
    };
    const EvenPlaces places(anchor(first), anchor(behind - 1), samples.xDigits);
    for (std::size_t i = 0; i < samples.x.size(); ++i)
    {
        if (isPlace(samples.x[i]) && !places.IsAt(samples.x[i], i))
        {
            return std::nullopt;
        }
    }
    return places;
}

/// How often x falls from one sample to the next that has an x.
std::size_t StepsBack(const std::vector<double>& places)
{
    std::size_t count = 0;
    double before = std::numeric_limits<double>::lowest();
    for (const double place : places)
    {
        count += place < before ? 1 : 0;
        before = std::isnan(place) ? before : place;
    }
    return count;
}

/// Levels from the lowest to the highest x of the valid samples, of which there is one at least.
SampleLevels LevelsOf(const Text& text, const ProfileScan& profile, const std::vector<double>& places)
{
    double lowest = std::numeric_limits<double>::max();
    double highest = std::numeric_limits<double>::lowest();
    for (std::size_t i = 0; i < places.size(); ++i)
    {
        const bool valid = profile.heights[i] != HeightMap::nullHeight;
        lowest = valid ? std::min(lowest, places[i]) : lowest;
        highest = valid ? std::max(highest, places[i]) : highest;
    }
    const double unit = text.options.unitMm->x;
    const double offset = text.options.offsetMm.x;
    for (const double end : {highest * unit - lowest * unit, highest * unit + offset, lowest * unit + offset})
    {
        if (!std::isfinite(end))
        {
            throw Error(text.file, "x",
                        fmt::format("x from {} to {} leads beyond the range of numbers", lowest, highest),
                        "Correct the unit or the offset, or leave wrong fields empty");
        }
    }
    return {lowest * unit, highest * unit, unit};
}

/// Gives samples positions of their own.
void SetPositions(ProfileScan& profile, const Text& text, const std::vector<double>& places)
{
    profile.positions.assign(places.size(), HeightMap::nullHeight);
    if (profile.validCount == 0)
    {
        return;
    }
    const SampleLevels levels = LevelsOf(text, profile, places);
    for (std::size_t i = 0; i < places.size(); ++i)
    {
        if (profile.heights[i] != HeightMap::nullHeight)
        {
            profile.positions[i] = levels.CountOf(places[i] * text.options.unitMm->x);
        }
    }
    profile.offsetMm.x += levels.Offset();
    profile.scaleMm.x = levels.Scale();
    profile.notes.push_back(
        fmt::format("x is not even: samples have positions of their own, rounded to steps of {} mm; "
                    "x goes back {} times.",
                    levels.Scale(), StepsBack(places)));
}

/// What a profile has along x and in z, as a grid of one row.
SampleGrid LineOf(const Text& text, std::size_t count, const std::optional<EvenPlaces>& places)
{
    const CsvOptions& options = text.options;
    SampleGrid grid{text.file, count, 1, ImageAxis::Columns, options.offsetMm, {1, 1, 1}, NotesOn(text)};
    if (options.spacingMm)
    {
        grid.spacingMm = *options.spacingMm;
        return grid;
    }
    grid.spacingMm.z = options.unitMm->z;
    if (places)
    {
        grid.spacingMm.x = places->Step() * options.unitMm->x;
        grid.offsetMm.x += places->At(0) * options.unitMm->x;
        grid.notes.push_back(fmt::format("x is even: {} mm from sample to sample.", grid.spacingMm.x));
    }
    return grid;
}

Scan ReadProfile(const Text& text)
{
    const CsvRoles roles = ProfileRoles(text);
    text.RefuseOption("xAxis", text.options.alongX, "a profile");
    if (roles.x)
    {
        text.RequireUnit();
        text.RefuseOption("spacing", text.options.spacingMm, "a profile with x");
    }
    else
    {
        text.RequireSpacing();
        text.RefuseOption("unit", text.options.unitMm, "a profile without x");
    }
    CsvSamples samples = ReadCsvSamples(text.Source(), roles);
    static_cast<void>(CheckedSampleCount(text.file, "lines", samples.z.size(), 1));
    for (std::size_t i = 0; i < samples.x.size(); ++i)
    {
        samples.z[i] = std::isnan(samples.x[i]) ? noNumber : samples.z[i];
    }
    const auto places = FindPlaces(samples);
    HeightMap line = BuildHeightMap(LineOf(text, samples.z.size(), places), std::span<const double>(samples.z), {});
    ProfileScan profile{std::move(line.heights), {},           std::move(samples.intensity),
                        line.offsetMm,           line.scaleMm, line.validCount,
                        std::move(line.notes)};
    if (roles.x && !places)
    {
        SetPositions(profile, text, samples.x);
    }
    return profile;
}

/// Samples of a height map in the order of the file: the one coordinate runs along a row, the other from row to row.
struct Rows
{
    ImageAxis alongX;
    const std::vector<double>& fast;
    const std::vector<double>& slow;
    const PrintedDigits& fastDigits;
    const PrintedDigits& slowDigits;
    std::string_view fastName;
    std::string_view slowName;
    std::size_t columns = 0; ///< of the first row
};

[[noreturn]] void RefuseGrid(const Text& text, std::uint64_t line, const std::string& problem)
{
    throw Error(
        text.file, fmt::format("line {}", line), problem,
        R"(Export all points of an even grid row by row, z left empty where nothing was measured; if this is a )"
        R"(profile, name its columns, as in "columns": {"x": 1, "z": 3}; if its points are scattered, export )"
        R"(them as a point cloud)");
}

void RequirePlaces(const Text& text, const CsvSamples& samples)
{
    for (std::size_t i = 0; i < samples.z.size(); ++i)
    {
        if (std::isnan(samples.x[i]) || std::isnan(samples.y[i]))
        {
            RefuseGrid(text, samples.LineOf(i), "a point of the grid has no x or no y");
        }
    }
}

/// The rows that the points seem to make: the first ends where its coordinate turns back.
Rows RowsOf(const CsvSamples& samples)
{
    const bool several = samples.z.size() > 1;
    const bool alongX = several && std::abs(samples.x[1] - samples.x[0]) >= std::abs(samples.y[1] - samples.y[0]);
    Rows rows = alongX ? Rows{ImageAxis::Columns, samples.x, samples.y, samples.xDigits, samples.yDigits, "x", "y"}
                       : Rows{ImageAxis::Rows, samples.y, samples.x, samples.yDigits, samples.xDigits, "y", "x"};
    const auto& fast = rows.fast;
    std::size_t end = 1;
    while (end < fast.size() && fast[end] != fast[end - 1] && (fast[end] > fast[end - 1]) == (fast[1] > fast[0]))
    {
        ++end;
    }
    rows.columns = end;
    return rows;
}

/// Even places of a coordinate of the grid.
EvenPlaces PlacesOf(const Text& text, const EvenPlaces::Anchor& first, const EvenPlaces::Anchor& last,
                    const PrintedDigits& digits, std::string_view name)
{
    if (!std::isfinite(last.value - first.value))
    {
        throw Error(text.file, std::string(name),
                    fmt::format("{} from {} to {} leads beyond the range of numbers", name, first.value, last.value),
                    "Correct these numbers");
    }
    return {first, last, digits};
}

/// The grid that the points make: places along a row and from row to row.
struct Grid
{
    EvenPlaces fast;
    EvenPlaces slow;
    std::size_t rowCount;
};

Grid GridOf(const Text& text, const CsvSamples& samples, const Rows& rows)
{
    const std::size_t columns = rows.columns;
    const std::size_t rowCount = samples.z.size() / columns;
    if (columns == 1 || rowCount == 1)
    {
        RefuseGrid(text, samples.LineOf(std::min(columns, samples.z.size() - 1)),
                   fmt::format("{} point{} along {} make no grid", columns, columns == 1 ? "" : "s and one row",
                               rows.fastName));
    }
    static_cast<void>(CheckedSampleCount(text.file, "lines", columns, rowCount));
    const std::size_t lastRow = rowCount - 1;
    return {PlacesOf(text, {0, rows.fast[0]}, {columns - 1, rows.fast[columns - 1]}, rows.fastDigits, rows.fastName),
            PlacesOf(text, {0, rows.slow[0]}, {lastRow, rows.slow[lastRow * columns]}, rows.slowDigits, rows.slowName),
            rowCount};
}

void RequireEven(const Text& text, const CsvSamples& samples, const Rows& rows, const Grid& grid)
{
    const auto require = [&](std::size_t i, const EvenPlaces& places, std::size_t index, double value, auto name) {
        if (!places.IsAt(value, index))
        {
            RefuseGrid(
                text, samples.LineOf(i),
                fmt::format("the points make no even grid from here on: {} is {}, where a grid of {} x {} points "
                            "has {}",
                            name, value, rows.columns, grid.rowCount, places.At(index)));
        }
    };
    for (std::size_t i = 0; i < samples.z.size(); ++i)
    {
        require(i, grid.fast, i % rows.columns, rows.fast[i], rows.fastName);
        require(i, grid.slow, i / rows.columns, rows.slow[i], rows.slowName);
    }
    if (const std::size_t rest = samples.z.size() % rows.columns; rest != 0)
    {
        RefuseGrid(text, samples.LineOf(samples.z.size() - 1),
                   fmt::format("the last row ends after {} of {} points", rest, rows.columns));
    }
    if (grid.slow.Step() == 0)
    {
        RefuseGrid(text, samples.LineOf(rows.columns), fmt::format("{} is the same in all rows", rows.slowName));
    }
}

/// Turns rows of samples so that both coordinates rise.
template <typename Sample>
void Rise(std::vector<Sample>& samples, const Rows& rows, const Grid& grid)
{
    if (grid.slow.Step() < 0)
    {
        std::ranges::reverse(samples);
    }
    if ((grid.slow.Step() < 0) != (grid.fast.Step() < 0))
    {
        const auto columns = static_cast<std::ptrdiff_t>(rows.columns);
        for (auto row = samples.begin(); row != samples.end(); row += columns)
        {
            std::reverse(row, row + columns);
        }
    }
}

SampleGrid SampleGridOf(const Text& text, const Rows& rows, const Grid& grid)
{
    const Vector3& unit = *text.options.unitMm;
    const bool byColumns = rows.alongX == ImageAxis::Columns;
    const double fastStart = std::min(grid.fast.At(0), grid.fast.At(rows.columns - 1));
    const double slowStart = std::min(grid.slow.At(0), grid.slow.At(grid.rowCount - 1));
    Vector3 offset = text.options.offsetMm;
    offset.x += (byColumns ? fastStart : slowStart) * unit.x;
    offset.y += (byColumns ? slowStart : fastStart) * unit.y;
    const double fastStep = std::abs(grid.fast.Step());
    const double slowStep = std::abs(grid.slow.Step());
    const Vector3 spacing{(byColumns ? fastStep : slowStep) * unit.x, (byColumns ? slowStep : fastStep) * unit.y,
                          unit.z};
    auto notes = NotesOn(text);
    notes.push_back(fmt::format("The points make an even grid, {} fastest: {} mm along x, {} mm along y.",
                                rows.fastName, spacing.x, spacing.y));
    return {text.file, rows.columns, grid.rowCount, rows.alongX, offset, spacing, std::move(notes)};
}

Scan ReadPoints(const Text& text)
{
    const CsvRoles roles = PointRoles(text);
    text.RequireUnit();
    text.RefuseOption("spacing", text.options.spacingMm, "a scan of points");
    text.RefuseOption("xAxis", text.options.alongX, "a scan of points");
    CsvSamples samples = ReadCsvSamples(text.Source(), roles);
    RequirePlaces(text, samples);
    const Rows rows = RowsOf(samples);
    const Grid grid = GridOf(text, samples, rows);
    RequireEven(text, samples, rows, grid);
    Rise(samples.z, rows, grid);
    HeightMap map = BuildHeightMap(SampleGridOf(text, rows, grid), std::span<const double>(samples.z), {});
    if (roles.intensity)
    {
        Rise(samples.intensity, rows, grid);
        map.intensity = rows.alongX == ImageAxis::Columns ? std::move(samples.intensity)
                                                          : Transposed(samples.intensity, rows.columns, grid.rowCount);
    }
    return map;
}

Scan ReadGrid(const Text& text)
{
    text.RequireSpacing();
    text.RefuseOption("unit", text.options.unitMm, "a grid of heights");
    text.RefuseOption("columns", text.options.columns, "a grid of heights");
    const CsvMatrix matrix = ReadCsvMatrix(text.Source());
    SampleGrid grid{text.file,
                    matrix.columns,
                    matrix.rows,
                    text.options.alongX.value_or(ImageAxis::Columns),
                    text.options.offsetMm,
                    *text.options.spacingMm,
                    NotesOn(text)};
    if (matrix.hadEmptyEnd)
    {
        grid.notes.emplace_back("All lines end in a separator, behind which there is no column.");
    }
    return BuildHeightMap(std::move(grid), std::span<const double>(matrix.heights), {});
}
} // namespace

bool LooksLikeCsv(const std::filesystem::path& file)
{
    return FindCsvDialect(file).has_value();
}

Scan ReadCsv(const std::filesystem::path& file, const CsvOptions& options)
{
    const auto dialect = FindCsvDialect(file);
    if (!dialect)
    {
        throw Error(file, "first lines", "this is not a text with lines of numbers",
                    "Give lines of numbers separated by semicolons, tabs, commas or blanks");
    }
    const Text text{file, *dialect, options};
    switch (LayoutOf(text))
    {
    case CsvLayout::Profile:
        return ReadProfile(text);
    case CsvLayout::Points:
        return ReadPoints(text);
    case CsvLayout::Grid:
        break;
    }
    return ReadGrid(text);
}
} // namespace Mu::Host
