#pragma once

#include <Host/Error.h>
#include <Host/ScanReader.h>

#include <gtest/gtest.h>
#include <tiffio.h>
#include <zip.h>

#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

/// Words for tests of the scan readers: folders that vanish, small scans in one line, errors as text.
namespace Mu::Host::Testing
{
inline std::filesystem::path ExampleScan(std::string_view name)
{
    return std::filesystem::path(MU_EXAMPLES_DIR) / "Scans" / name;
}

/// A scan that is known to be a height map.
template <typename... Arguments>
HeightMap ReadHeightMap(const Arguments&... arguments)
{
    return std::get<HeightMap>(ReadScan(arguments...));
}

/// A folder of its own that lives as long as the object.
class TemporaryFolder
{
public:
    TemporaryFolder()
    {
        std::string name = (std::filesystem::temp_directory_path() / "scans-XXXXXX").string();
        if (mkdtemp(name.data()) == nullptr)
        {
            throw std::runtime_error("no temporary folder could be made: " + name);
        }
        path = name;
    }

    ~TemporaryFolder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(path, ignored);
    }

    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    std::filesystem::path operator/(std::string_view name) const
    {
        return path / name;
    }

private:
    std::filesystem::path path;
};

inline void WriteBytes(const std::filesystem::path& file, std::string_view bytes)
{
    std::ofstream stream(file, std::ios::binary);
    stream.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    if (!stream.flush())
    {
        throw std::runtime_error("cannot write " + file.string());
    }
}

inline std::string ReadBytes(const std::filesystem::path& file)
{
    std::ifstream stream(file, std::ios::binary);
    if (!stream)
    {
        throw std::runtime_error("cannot read " + file.string());
    }
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

template <typename Value>
std::string BytesOf(const std::vector<Value>& values)
{
    const auto bytes = std::as_bytes(std::span(values));
    std::string text(bytes.size(), '\0');
    std::memcpy(text.data(), bytes.data(), bytes.size());
    return text;
}

/// What differs between the TIFF files of the tests.
struct TiffStyle
{
    const char* mode = "w";
    std::uint16_t compression = COMPRESSION_NONE;
    std::uint32_t tileSide = 0; ///< 0 for strips
    std::uint32_t rowsPerStrip = 2;
    std::uint16_t samplesPerPixel = 1;
    std::uint16_t photometric = PHOTOMETRIC_MINISBLACK;
    std::uint16_t orientation = ORIENTATION_TOPLEFT;
    int pages = 1;
};

template <typename Sample>
void WriteTiffPage(TIFF* tiff, std::uint32_t columns, std::vector<Sample> samples, const TiffStyle& style)
{
    const auto perRow = columns * style.samplesPerPixel;
    const auto rows = static_cast<std::uint32_t>(samples.size()) / perRow;
    const int format = std::is_floating_point_v<Sample> ? SAMPLEFORMAT_IEEEFP
                       : std::is_signed_v<Sample>       ? SAMPLEFORMAT_INT
                                                        : SAMPLEFORMAT_UINT;
    TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, columns);
    TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, rows);
    TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, static_cast<int>(8 * sizeof(Sample)));
    TIFFSetField(tiff, TIFFTAG_SAMPLEFORMAT, format);
    TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, static_cast<int>(style.samplesPerPixel));
    TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, static_cast<int>(style.photometric));
    TIFFSetField(tiff, TIFFTAG_ORIENTATION, static_cast<int>(style.orientation));
    TIFFSetField(tiff, TIFFTAG_COMPRESSION, static_cast<int>(style.compression));
    TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
    if (style.tileSide == 0)
    {
        TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, style.rowsPerStrip);
        for (std::uint32_t row = 0; row < rows; ++row)
        {
            ASSERT_EQ(TIFFWriteScanline(tiff, samples.data() + row * perRow, row, 0), 1);
        }
        return;
    }
    TIFFSetField(tiff, TIFFTAG_TILEWIDTH, style.tileSide);
    TIFFSetField(tiff, TIFFTAG_TILELENGTH, style.tileSide);
    for (std::uint32_t top = 0; top < rows; top += style.tileSide)
    {
        for (std::uint32_t left = 0; left < columns; left += style.tileSide)
        {
            std::vector<Sample> tile(std::size_t{style.tileSide} * style.tileSide);
            for (std::uint32_t row = top; row < std::min(top + style.tileSide, rows); ++row)
            {
                std::copy_n(samples.data() + row * columns + left, std::min(style.tileSide, columns - left),
                            tile.data() + (row - top) * style.tileSide);
            }
            ASSERT_GT(TIFFWriteTile(tiff, tile.data(), left, top, 0, 0), 0);
        }
    }
}

/// Writes samples as a grey image, or as what `style` makes of it, and gives the name of the file back.
template <typename Sample>
std::filesystem::path WriteTiff(const std::filesystem::path& file, std::uint32_t columns,
                                const std::vector<Sample>& samples, const TiffStyle& style = {})
{
    TIFF* tiff = TIFFOpen(file.c_str(), style.mode);
    if (tiff == nullptr)
    {
        throw std::runtime_error("cannot write " + file.string());
    }
    for (int page = 0; page < style.pages; ++page)
    {
        WriteTiffPage(tiff, columns, samples, style);
        EXPECT_EQ(TIFFWriteDirectory(tiff), 1);
    }
    TIFFClose(tiff);
    return file;
}

/// Name and bytes of the entries of an archive.
using Entries = std::vector<std::pair<std::string, std::string>>;

inline std::filesystem::path WriteZip(const std::filesystem::path& file, const Entries& entries,
                                      zip_int32_t method = ZIP_CM_DEFLATE)
{
    int code = 0;
    zip_t* zip = zip_open(file.c_str(), ZIP_CREATE | ZIP_TRUNCATE, &code);
    if (zip == nullptr)
    {
        throw std::runtime_error("cannot write " + file.string());
    }
    for (const auto& [name, bytes] : entries)
    {
        zip_source_t* source = zip_source_buffer(zip, bytes.data(), bytes.size(), 0);
        const zip_int64_t index = zip_file_add(zip, name.c_str(), source, ZIP_FL_ENC_UTF_8);
        EXPECT_GE(index, 0) << name;
        EXPECT_EQ(zip_set_file_compression(zip, static_cast<zip_uint64_t>(index), method, 0), 0);
    }
    EXPECT_EQ(zip_close(zip), 0);
    return file;
}

/// The description of a surface with 1 µm, 2 µm and (for integers) 0.5 µm as increments.
inline std::string X3pXml(int columns, int rows, std::string_view type)
{
    return "<?xml version=\"1.0\"?>\n"
           "<p:ISO5436_2 xmlns:p=\"http://www.opengps.eu/2008/ISO5436_2\"><Record1><FeatureType>SUR</FeatureType><Axes>"
           "<CX><AxisType>I</AxisType><DataType>D</DataType><Increment>1e-6</Increment><Offset>3e-6</Offset></CX>"
           "<CY><AxisType>I</AxisType><DataType>D</DataType><Increment>2e-6</Increment><Offset/></CY>"
           "<CZ><AxisType>A</AxisType><DataType>" +
           std::string(type) + "</DataType>" +
           (type == "I" || type == "L" ? "<Increment>5e-7</Increment><Offset>1e-6</Offset>" : "") +
           "</CZ></Axes></Record1><Record3><MatrixDimension><SizeX>" + std::to_string(columns) + "</SizeX><SizeY>" +
           std::to_string(rows) +
           "</SizeY><SizeZ>1</SizeZ></MatrixDimension>"
           "<DataLink><PointDataLink>bindata/data.bin</PointDataLink></DataLink></Record3></p:ISO5436_2>";
}

/// The text with the first `from` replaced, which it must hold.
inline std::string Replaced(std::string text, std::string_view from, std::string_view to)
{
    const auto at = text.find(from);
    if (at == std::string::npos)
    {
        throw std::runtime_error("nothing to replace: " + std::string(from));
    }
    return text.replace(at, from.size(), to);
}

/// The message of the Error that the call throws; a failure of the test if it throws none.
template <typename Call>
std::string ErrorOf(Call call)
{
    try
    {
        static_cast<void>(call());
    }
    catch (const Error& error)
    {
        return error.what();
    }
    ADD_FAILURE() << "no error was raised";
    return {};
}

inline testing::AssertionResult Contains(const std::string& text, std::string_view part)
{
    if (text.find(part) != std::string::npos)
    {
        return testing::AssertionSuccess();
    }
    return testing::AssertionFailure() << "\"" << part << "\" is not in \"" << text << "\"";
}

/// Whether the reader of a scan of any kind said this.
template <typename Kind>
bool HasNote(const Kind& scan, std::string_view part)
{
    return std::ranges::any_of(scan.notes, [part](const std::string& note) { return note.find(part) != note.npos; });
}

/// The height of sample (column, row) of the map in mm.
inline double HeightMm(const HeightMap& map, std::size_t column, std::size_t row)
{
    return map.offsetMm.z + map.scaleMm.z * map.heights.at(row * map.width + column);
}
} // namespace Mu::Host::Testing
