#include <Host/X3pReader.h>

#include <Host/Error.h>
#include <Host/ScanFile.h>

#include <fmt/format.h>
#include <pugixml.hpp>
#include <zip.h>

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace Mu::Host
{
namespace
{
// Matrices are little-endian and are read straight into memory.
static_assert(std::endian::native == std::endian::little);

constexpr std::uint64_t largestXml = 4 * 1024 * 1024;
constexpr std::uint64_t largestEntryCount = 65535;
constexpr double mmPerMetre = 1000;
constexpr std::string_view exportAgain = "The file is truncated or damaged: copy or export it again";

struct CloseArchive
{
    void operator()(zip_t* zip) const
    {
        zip_discard(zip);
    }
};

struct CloseEntry
{
    void operator()(zip_file_t* entry) const
    {
        zip_fclose(entry);
    }
};

/// An archive opened for reading.
class Archive
{
public:
    explicit Archive(const std::filesystem::path& path)
        : file(path)
    {
        RequireReadableFile(file);
        int code = 0;
        zip.reset(zip_open(file.c_str(), ZIP_RDONLY, &code));
        if (!zip)
        {
            zip_error_t error;
            zip_error_init_with_code(&error, code);
            const std::string cause = Printable(zip_error_strerror(&error));
            zip_error_fini(&error);
            throw Error(file, "zip archive", fmt::format("this cannot be opened ({})", cause),
                        "The file is truncated, damaged or of another format: copy or export it again");
        }
        ListNames();
    }

    const std::filesystem::path& File() const
    {
        return file;
    }

    /// Names of all entries, by index; empty where an entry has none.
    const std::vector<std::string>& Names() const
    {
        return names;
    }

    std::optional<std::size_t> Find(std::string_view name) const
    {
        const auto found = std::ranges::find(names, name);
        return found == names.end() ? std::nullopt : std::optional(static_cast<std::size_t>(found - names.begin()));
    }

    /// The unpacked size of an entry as the archive states it.
    /// @throws Error  if the entry cannot be unpacked here, or states a size that it cannot unpack to
    std::uint64_t StatedSize(std::size_t index) const
    {
        zip_stat_t stat;
        zip_stat_init(&stat);
        constexpr zip_uint64_t needed = ZIP_STAT_SIZE | ZIP_STAT_COMP_SIZE | ZIP_STAT_COMP_METHOD;
        if (zip_stat_index(zip.get(), index, 0, &stat) != 0 || (stat.valid & needed) != needed)
        {
            RefuseEntry(index);
        }
        const bool stored = stat.comp_method == ZIP_CM_STORE;
        if ((!stored && stat.comp_method != ZIP_CM_DEFLATE) ||
            ((stat.valid & ZIP_STAT_ENCRYPTION_METHOD) != 0 && stat.encryption_method != ZIP_EM_NONE))
        {
            throw Error(file, Printable(names[index]), "the entry is encrypted or packed in an unusual way",
                        "Pack the archive anew with deflate and without a password");
        }
        // Deflate cannot do better than 1 to 1032, so that what claims more is made to exhaust memory.
        constexpr std::uint64_t bestDeflate = 1032;
        if (stat.comp_size < (stored ? stat.size : stat.size / bestDeflate))
        {
            throw Error(file, Printable(names[index]),
                        fmt::format("{} packed bytes cannot hold {} bytes", stat.comp_size, stat.size), exportAgain);
        }
        return stat.size;
    }

    /// Reads a whole entry, which must have exactly the size of `bytes`.
    void Read(std::size_t index, std::span<std::byte> bytes) const
    {
        const std::unique_ptr<zip_file_t, CloseEntry> entry(zip_fopen_index(zip.get(), index, 0));
        if (!entry)
        {
            RefuseEntry(index);
        }
        std::size_t done = 0;
        while (done < bytes.size())
        {
            const zip_int64_t count = zip_fread(entry.get(), bytes.data() + done, bytes.size() - done);
            if (count <= 0)
            {
                RefuseEntry(index);
            }
            done += static_cast<std::size_t>(count);
        }
        // Reading on shows entries that go on beyond their stated size, and has the checksum verified.
        std::byte beyond{};
        if (zip_fread(entry.get(), &beyond, 1) != 0)
        {
            RefuseEntry(index);
        }
    }

private:
    void ListNames()
    {
        const zip_int64_t count = zip_get_num_entries(zip.get(), 0);
        if (count < 0 || static_cast<std::uint64_t>(count) > largestEntryCount)
        {
            throw Error(file, "zip archive",
                        fmt::format("{} entries are too many (at most {})", count, largestEntryCount),
                        "Check that this is a scan");
        }
        for (zip_int64_t i = 0; i < count; ++i)
        {
            const char* name = zip_get_name(zip.get(), static_cast<zip_uint64_t>(i), ZIP_FL_ENC_RAW);
            names.emplace_back(name == nullptr ? "" : name);
        }
    }

    [[noreturn]] void RefuseEntry(std::size_t index) const
    {
        throw Error(file, Printable(names[index]), "the entry cannot be unpacked to its stated size and checksum",
                    exportAgain);
    }

    std::filesystem::path file;
    std::unique_ptr<zip_t, CloseArchive> zip;
    std::vector<std::string> names;
};

/// The entry that describes the scan, and the folder that its links start from ("" or with a slash at its end).
struct Description
{
    std::size_t entry;
    std::string folder;
};

Description FindDescription(const Archive& archive)
{
    constexpr std::string_view wanted = "main.xml";
    if (const auto entry = archive.Find(wanted))
    {
        return {*entry, ""};
    }
    std::optional<Description> found;
    for (std::size_t i = 0; i < archive.Names().size(); ++i)
    {
        const std::string_view name = archive.Names()[i];
        // macOS adds a shadow of every file in a folder of its own.
        if (!name.ends_with("/main.xml") || name.starts_with("__MACOSX/"))
        {
            continue;
        }
        if (found)
        {
            throw Error(archive.File(), Printable(name), "this is a second main.xml in one archive",
                        "Keep one scan in an archive");
        }
        found = Description{i, std::string(name.substr(0, name.size() - wanted.size()))};
    }
    if (!found)
    {
        throw Error(archive.File(), "zip archive", "there is no main.xml, so this is no X3P file",
                    "Check that the file is a scan and not another zip archive");
    }
    return *found;
}

std::string_view Trimmed(std::string_view text)
{
    constexpr std::string_view blanks = " \t\r\n";
    const auto first = text.find_first_not_of(blanks);
    return first == std::string_view::npos ? std::string_view()
                                           : text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

std::string_view LocalName(const pugi::xml_node& node)
{
    const std::string_view name = node.name();
    const auto colon = name.rfind(':');
    return colon == std::string_view::npos ? name : name.substr(colon + 1);
}

/// An element of main.xml and its path, for messages. The element may be missing.
class Element
{
public:
    Element(const std::filesystem::path& scan, pugi::xml_node element, std::string elementPath)
        : file(&scan)
        , node(element)
        , path(std::move(elementPath))
    {
    }

    /// The first child of that name, whatever its prefix.
    Element Child(std::string_view name) const
    {
        const auto child = node.find_child([name](const pugi::xml_node& each) { return LocalName(each) == name; });
        return {*file, child, fmt::format("{}/{}", path, name)};
    }

    bool Exists() const
    {
        return !node.empty();
    }

    std::string_view Text() const
    {
        return Trimmed(node.child_value());
    }

    [[noreturn]] void Refuse(std::string_view remedy) const
    {
        throw Error(*file, path, Exists() ? Quoted(Text()) + " is not usable" : "the element is missing", remedy);
    }

    std::uint64_t Count() const
    {
        const std::string_view text = Text();
        std::uint64_t value = 0;
        const auto [end, code] = std::from_chars(text.data(), text.data() + text.size(), value);
        if (code != std::errc() || end != text.data() + text.size())
        {
            Refuse("Give a whole number of samples");
        }
        return value;
    }

    /// The number in the element, or `absent` if the element is missing or empty.
    double NumberOr(double absent) const
    {
        std::string_view text = Text();
        if (text.empty())
        {
            return absent;
        }
        text.remove_prefix(text.starts_with('+') ? 1 : 0);
        double value = 0;
        const auto [end, code] = std::from_chars(text.data(), text.data() + text.size(), value);
        if (code != std::errc() || end != text.data() + text.size() || !std::isfinite(value))
        {
            Refuse("Give a number in metres, such as 2.5e-06");
        }
        return value;
    }

    /// The names of the children that are not in `known`.
    std::vector<std::string> ChildrenBeside(std::initializer_list<std::string_view> known) const
    {
        std::vector<std::string> names;
        for (const pugi::xml_node& child : node.children())
        {
            if (child.type() == pugi::node_element && std::ranges::find(known, LocalName(child)) == known.end())
            {
                names.push_back(fmt::format("{}/{}", path, Printable(LocalName(child))));
            }
        }
        return names;
    }

private:
    const std::filesystem::path* file;
    pugi::xml_node node;
    std::string path;
};

/// Increment and offset of an axis in mm.
struct Axis
{
    double incrementMm;
    double offsetMm;
};

Axis ReadAxis(const Element& element, double absentIncrement)
{
    const Element increment = element.Child("Increment");
    const Axis axis{increment.NumberOr(absentIncrement) * mmPerMetre, element.Child("Offset").NumberOr(0) * mmPerMetre};
    // Also refuses what is beyond the range of numbers only in mm, or is lost there.
    if (!(axis.incrementMm > 0) || !std::isfinite(axis.incrementMm) || !std::isfinite(axis.offsetMm))
    {
        increment.Refuse("Give the distance of samples in metres, a number greater than 0");
    }
    return axis;
}

Axis ReadGridAxis(const Element& element)
{
    const Element type = element.Child("AxisType");
    if (type.Text() != "I")
    {
        type.Refuse("Only surfaces on an even grid are read: export with x and y axes of type I");
    }
    return ReadAxis(element, 0);
}

template <typename Sample>
HeightMap ReadMatrix(const Archive& archive, std::size_t entry, SampleGrid grid, std::span<const std::uint8_t> valid)
{
    std::vector<Sample> samples(grid.columns * grid.rows);
    archive.Read(entry, std::as_writable_bytes(std::span(samples)));
    return BuildHeightMap(std::move(grid), std::span<const Sample>(samples), valid);
}

struct SampleKind
{
    std::string_view letter;
    std::size_t size;
    double absentIncrement; ///< 0, which is refused, for integers: their unit must be told
    HeightMap (*read)(const Archive&, std::size_t, SampleGrid, std::span<const std::uint8_t>);
};

constexpr std::array sampleKinds{SampleKind{"I", 2, 0, &ReadMatrix<std::int16_t>},
                                 SampleKind{"L", 4, 0, &ReadMatrix<std::int32_t>},
                                 SampleKind{"F", 4, 1, &ReadMatrix<float>}, SampleKind{"D", 8, 1, &ReadMatrix<double>}};

const SampleKind& FindSampleKind(const Element& heightAxis)
{
    const Element type = heightAxis.Child("AxisType");
    if (type.Text() != "A")
    {
        type.Refuse("Export with a z axis of type A");
    }
    const Element letter = heightAxis.Child("DataType");
    const auto kind = std::ranges::find(sampleKinds, letter.Text(), &SampleKind::letter);
    if (kind == sampleKinds.end())
    {
        letter.Refuse("Export the heights with data type I, L, F or D");
    }
    return *kind;
}

/// The entry of the archive that an element links to.
std::size_t FollowLink(const Archive& archive, const std::string& folder, const Element& link)
{
    std::string_view target = link.Text();
    if (target.starts_with("./"))
    {
        target.remove_prefix(2);
    }
    const bool leaves = target.starts_with('/') || target.find_first_of("\\:") != std::string_view::npos ||
                        fmt::format("/{}/", target).find("/../") != std::string::npos;
    if (target.empty() || leaves)
    {
        link.Refuse("Give the name of a file in the archive, relative to main.xml, such as bindata/data.bin");
    }
    const auto entry = archive.Find(folder + std::string(target));
    if (!entry)
    {
        link.Refuse("There is no such entry in the archive: copy or export the file again");
    }
    return *entry;
}

/// @throws Error  if the entry does not have the size that follows from the matrix
void RequireSize(const Archive& archive, std::size_t entry, std::uint64_t expected)
{
    const std::uint64_t stated = archive.StatedSize(entry);
    if (stated != expected)
    {
        throw Error(archive.File(), Printable(archive.Names()[entry]),
                    fmt::format("the entry has {} bytes where main.xml calls for {}", stated, expected),
                    "The file contradicts itself: export it again");
    }
}

/// One byte a sample, or none if all are valid as far as the file says.
std::vector<std::uint8_t> ReadValidPoints(const Archive& archive, const std::string& folder, const Element& link,
                                          std::size_t count)
{
    if (!link.Exists() || link.Text().empty())
    {
        return {};
    }
    const std::size_t entry = FollowLink(archive, folder, link);
    std::vector<std::uint8_t> bits((count + 7) / 8);
    RequireSize(archive, entry, bits.size());
    archive.Read(entry, std::as_writable_bytes(std::span(bits)));
    std::vector<std::uint8_t> valid(count);
    for (std::size_t i = 0; i < count; ++i)
    {
        valid[i] = static_cast<std::uint8_t>((bits[i / 8] >> (i % 8)) & 1);
    }
    return valid;
}

Element RequireRoot(const std::filesystem::path& file, const pugi::xml_document& document)
{
    const pugi::xml_node root = document.document_element();
    const std::string_view name = LocalName(root);
    if (name != "ISO5436_2" && name != "ISO5436")
    {
        throw Error(file, "main.xml", fmt::format("the root element {} is not ISO5436_2", Quoted(name)),
                    "Check that the file is a scan and not another zip archive");
    }
    return {file, root, "main.xml"};
}

void LoadXml(const Archive& archive, std::size_t entry, pugi::xml_document& document)
{
    const std::uint64_t size = archive.StatedSize(entry);
    if (size > largestXml)
    {
        throw Error(archive.File(), "main.xml", fmt::format("{} bytes are too many (at most {})", size, largestXml),
                    "Check that the file is a scan");
    }
    std::vector<std::byte> text(static_cast<std::size_t>(size));
    archive.Read(entry, text);
    const auto result = document.load_buffer(text.data(), text.size());
    if (!result)
    {
        throw Error(archive.File(), fmt::format("main.xml, byte {}", result.offset),
                    fmt::format("this is not XML ({})", result.description()), exportAgain);
    }
}

void RequireGridOfHeights(const Element& root)
{
    const Element feature = root.Child("Record1").Child("FeatureType");
    if (feature.Text() != "SUR")
    {
        feature.Refuse("Only surfaces (SUR) are read: export the scan as a surface");
    }
    const Element record = root.Child("Record3");
    const Element sizeZ = record.Child("MatrixDimension").Child("SizeZ");
    if (sizeZ.Count() != 1)
    {
        sizeZ.Refuse("Only surfaces of one layer are read: export with SizeZ 1");
    }
    if (const Element list = record.Child("DataList"); list.Exists())
    {
        list.Refuse("Samples as text are not read: export the scan with a binary matrix (DataLink)");
    }
}

std::vector<std::string> NotesOn(const Element& root, const Axis& x, const Axis& y, const SampleKind& kind)
{
    std::vector<std::string> notes{
        fmt::format("SizeX is x, SizeY is y: {} mm and {} mm from sample to sample; samples of type {}.", x.incrementMm,
                    y.incrementMm, kind.letter)};
    const Element record = root.Child("Record3");
    if (record.Child("DataLink").Child("MD5ChecksumPointData").Exists())
    {
        notes.push_back("The MD5 sum of the matrix was not checked; the checksum of the archive was.");
    }
    for (const auto& ignored : {root.Child("Record1").Child("Axes").ChildrenBeside({"CX", "CY", "CZ"}),
                                record.ChildrenBeside({"MatrixDimension", "DataLink"})})
    {
        for (const std::string& name : ignored)
        {
            notes.push_back(name + " was ignored.");
        }
    }
    return notes;
}
} // namespace

HeightMap ReadX3p(const std::filesystem::path& file)
{
    const Archive archive(file);
    const Description description = FindDescription(archive);
    pugi::xml_document document;
    LoadXml(archive, description.entry, document);
    const Element root = RequireRoot(file, document);
    RequireGridOfHeights(root);

    const Element axes = root.Child("Record1").Child("Axes");
    const SampleKind& kind = FindSampleKind(axes.Child("CZ"));
    const Axis x = ReadGridAxis(axes.Child("CX"));
    const Axis y = ReadGridAxis(axes.Child("CY"));
    const Axis z = ReadAxis(axes.Child("CZ"), kind.absentIncrement);

    const Element dimension = root.Child("Record3").Child("MatrixDimension");
    const std::uint64_t columns = dimension.Child("SizeX").Count();
    const std::uint64_t rows = dimension.Child("SizeY").Count();
    const std::size_t count = CheckedSampleCount(file, "main.xml/Record3/MatrixDimension", columns, rows);

    const Element links = root.Child("Record3").Child("DataLink");
    const std::size_t matrix = FollowLink(archive, description.folder, links.Child("PointDataLink"));
    RequireSize(archive, matrix, count * kind.size);
    const auto valid = ReadValidPoints(archive, description.folder, links.Child("ValidPointsLink"), count);

    SampleGrid grid{.file = file,
                    .columns = static_cast<std::size_t>(columns),
                    .rows = static_cast<std::size_t>(rows),
                    .alongX = ImageAxis::Columns,
                    .offsetMm = {x.offsetMm, y.offsetMm, z.offsetMm},
                    .spacingMm = {x.incrementMm, y.incrementMm, z.incrementMm},
                    .notes = NotesOn(root, x, y, kind)};
    if (!valid.empty())
    {
        grid.notes.push_back("Samples whose bit in the file of valid points is 0 are invalid.");
    }
    return kind.read(archive, matrix, std::move(grid), valid);
}
} // namespace Mu::Host
