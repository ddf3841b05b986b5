#include <Host/TiffReader.h>

#include <Host/Error.h>
#include <Host/ScanFile.h>

#include <fmt/format.h>
#include <tiffio.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdarg>
#include <cstdio>
#include <limits>
#include <memory>
#include <mutex>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

namespace Mu::Host
{
namespace
{
/// What libtiff said on this thread while a reader was at work.
struct Messages
{
    std::vector<std::string> errors;
    std::vector<std::string> warnings;
};

thread_local Messages* listener = nullptr;
TIFFErrorHandler otherErrorHandler = nullptr;
TIFFErrorHandler otherWarningHandler = nullptr;

[[gnu::format(printf, 2, 0)]] void Keep(std::vector<std::string>& texts, const char* format, std::va_list arguments)
{
    // A damaged file can give rise to thousands of messages; the first few tell the cause.
    constexpr std::size_t most = 4;
    if (texts.size() >= most)
    {
        return;
    }
    std::array<char, 256> text{};
    std::vsnprintf(text.data(), text.size(), format, arguments);
    std::string shown = Printable(text.data());
    if (std::ranges::find(texts, shown) == texts.end())
    {
        texts.push_back(std::move(shown));
    }
}

// The handlers of libtiff are global. Ours take only what a reader's own thread hears; the rest goes where it went.
[[gnu::format(printf, 2, 0)]] void HearError(const char* module, const char* format, std::va_list arguments)
{
    if (listener != nullptr)
    {
        Keep(listener->errors, format, arguments);
    }
    else if (otherErrorHandler != nullptr)
    {
        otherErrorHandler(module, format, arguments);
    }
}

[[gnu::format(printf, 2, 0)]] void HearWarning(const char* module, const char* format, std::va_list arguments)
{
    if (listener != nullptr)
    {
        Keep(listener->warnings, format, arguments);
    }
    else if (otherWarningHandler != nullptr)
    {
        otherWarningHandler(module, format, arguments);
    }
}

/// Listens to libtiff on this thread for as long as it lives.
class Listening
{
public:
    Listening()
    {
        static std::once_flag installed;
        std::call_once(installed, [] {
            otherErrorHandler = TIFFSetErrorHandler(&HearError);
            otherWarningHandler = TIFFSetWarningHandler(&HearWarning);
        });
        listener = &messages;
    }

    ~Listening()
    {
        listener = nullptr;
    }

    Listening(const Listening&) = delete;
    Listening& operator=(const Listening&) = delete;

    /// What led to a failure, in brackets, or nothing.
    std::string Cause() const
    {
        const auto& texts = messages.errors.empty() ? messages.warnings : messages.errors;
        return texts.empty() ? std::string() : fmt::format(" ({})", fmt::join(texts, "; "));
    }

    const std::vector<std::string>& Warnings() const
    {
        return messages.warnings;
    }

private:
    Messages messages;
};

struct CloseTiff
{
    void operator()(TIFF* tiff) const
    {
        TIFFClose(tiff);
    }
};

/// An open image, its file, what libtiff said of it and its size.
struct Image
{
    const std::filesystem::path& file;
    const Listening& heard;
    TIFF* tiff;
    std::uint32_t columns = 0;
    std::uint32_t rows = 0;
};

template <typename Value>
Value TagOr(TIFF* tiff, std::uint32_t tag, Value absent)
{
    Value value = absent;
    return TIFFGetFieldDefaulted(tiff, tag, &value) == 1 ? value : absent;
}

/// A tag that must have the one value that is also its default.
struct TagRule
{
    std::string_view name;
    std::uint32_t tag;
    std::uint16_t value;
    std::string_view remedy;
};

constexpr std::array tagRules{
    TagRule{"SamplesPerPixel", TIFFTAG_SAMPLESPERPIXEL, 1, "Export the heights as an image of one sample per pixel"},
    TagRule{"PhotometricInterpretation", TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_MINISBLACK,
            "Export the heights as a grey image in which black is low"},
    TagRule{"Orientation", TIFFTAG_ORIENTATION, ORIENTATION_TOPLEFT,
            "Export the image with its first row at the top and its first column at the left"}};

void RequireGreyImage(const Image& image)
{
    for (const TagRule& rule : tagRules)
    {
        const auto value = TagOr(image.tiff, rule.tag, rule.value);
        if (value != rule.value)
        {
            throw Error(image.file, rule.name, fmt::format("{} is not supported, only {} is", value, rule.value),
                        rule.remedy);
        }
    }
    const auto compression = TagOr<std::uint16_t>(image.tiff, TIFFTAG_COMPRESSION, COMPRESSION_NONE);
    if (TIFFIsCODECConfigured(compression) == 0)
    {
        throw Error(image.file, "Compression", fmt::format("{} cannot be read here", compression),
                    "Export the image with LZW or deflate compression or with none");
    }
}

[[noreturn]] void RefuseData(const Image& image, const std::string& place)
{
    throw Error(image.file, place, "the samples cannot be read" + image.heard.Cause(),
                "The file is truncated or damaged: copy or export it again");
}

/// libtiff takes a tile that has no place in the file for one at its start, and so would give its header for heights.
void RequireDataInFile(const Image& image)
{
    std::error_code failure;
    const std::uint64_t fileSize = std::filesystem::file_size(image.file, failure);
    const bool tiled = TIFFIsTiled(image.tiff) != 0;
    const bool unpackedTiles = tiled && TagOr<std::uint16_t>(image.tiff, TIFFTAG_COMPRESSION, 0) == COMPRESSION_NONE;
    const std::uint64_t fewest = unpackedTiles ? TIFFTileSize64(image.tiff) : 1;
    const std::uint32_t count = tiled ? TIFFNumberOfTiles(image.tiff) : TIFFNumberOfStrips(image.tiff);
    for (std::uint32_t i = 0; i < count; ++i)
    {
        const std::uint64_t offset = TIFFGetStrileOffset(image.tiff, i);
        const std::uint64_t size = TIFFGetStrileByteCount(image.tiff, i);
        if (failure || offset == 0 || size < fewest || size > fileSize || offset > fileSize - size)
        {
            RefuseData(image, fmt::format("{} {} of {}", tiled ? "tile" : "strip", i, count));
        }
    }
}

/// Samples that grow with what is decoded, so that a small file that claims a large image costs little memory.
template <typename Sample>
std::vector<Sample> ReservedSamples(const Image& image)
{
    constexpr std::size_t atOnce = std::size_t{1} << 24;
    std::vector<Sample> samples;
    samples.reserve(std::min(std::size_t{image.columns} * image.rows, atOnce));
    return samples;
}

template <typename Sample>
std::vector<Sample> ReadStrips(const Image& image)
{
    const std::size_t columns = image.columns;
    if (TIFFScanlineSize64(image.tiff) != columns * sizeof(Sample))
    {
        RefuseData(image, "row size");
    }
    auto samples = ReservedSamples<Sample>(image);
    for (std::uint32_t row = 0; row < image.rows; ++row)
    {
        samples.resize((std::size_t{row} + 1) * columns);
        if (TIFFReadScanline(image.tiff, samples.data() + row * columns, row, 0) != 1)
        {
            RefuseData(image, fmt::format("row {} of {}", row, image.rows));
        }
    }
    return samples;
}

template <typename Sample>
std::vector<Sample> ReadTiles(const Image& image)
{
    constexpr std::uint64_t largestTile = std::uint64_t{1} << 26;
    const std::size_t columns = image.columns;
    const std::size_t width = TagOr(image.tiff, TIFFTAG_TILEWIDTH, std::uint32_t{0});
    const std::size_t height = TagOr(image.tiff, TIFFTAG_TILELENGTH, std::uint32_t{0});
    const std::uint64_t size = TIFFTileSize64(image.tiff);
    if (width == 0 || height == 0 || size > largestTile || size != width * height * sizeof(Sample))
    {
        throw Error(image.file, "tile size", fmt::format("tiles of {} x {} samples cannot be read", width, height),
                    "Export the image with smaller tiles, such as 256 x 256, or in strips");
    }
    std::vector<Sample> tile(width * height);
    auto samples = ReservedSamples<Sample>(image);
    for (std::size_t top = 0; top < image.rows; top += height)
    {
        const std::size_t bottom = std::min<std::size_t>(top + height, image.rows);
        samples.resize(bottom * columns);
        for (std::size_t left = 0; left < columns; left += width)
        {
            const auto number =
                TIFFComputeTile(image.tiff, static_cast<std::uint32_t>(left), static_cast<std::uint32_t>(top), 0, 0);
            if (TIFFReadEncodedTile(image.tiff, number, tile.data(), static_cast<tmsize_t>(size)) !=
                static_cast<tmsize_t>(size))
            {
                RefuseData(image, fmt::format("tile at column {}, row {}", left, top));
            }
            for (std::size_t row = top; row < bottom; ++row)
            {
                std::copy_n(tile.data() + (row - top) * width, std::min(width, columns - left),
                            samples.data() + row * columns + left);
            }
        }
    }
    return samples;
}

/// The value as a sample has it; nothing if no sample can have it.
template <typename Sample>
std::optional<Sample> AsSample(double value)
{
    using Limits = std::numeric_limits<Sample>;
    if (value < static_cast<double>(Limits::lowest()) || value > static_cast<double>(Limits::max()))
    {
        return std::nullopt;
    }
    if (std::is_integral_v<Sample> && value != std::trunc(value))
    {
        return std::nullopt;
    }
    return static_cast<Sample>(value);
}

template <typename Sample>
std::vector<std::uint8_t> MarkValid(const std::vector<Sample>& samples, std::optional<double> invalid)
{
    const auto mark = invalid ? AsSample<Sample>(*invalid) : std::nullopt;
    if (!mark)
    {
        return {};
    }
    std::vector<std::uint8_t> valid(samples.size());
    std::ranges::transform(samples, valid.begin(),
                           [mark = *mark](Sample sample) { return static_cast<std::uint8_t>(sample != mark); });
    return valid;
}

template <typename Sample>
HeightMap ReadSamples(const Image& image, SampleGrid grid, std::optional<double> invalid)
{
    RequireDataInFile(image);
    const auto samples = TIFFIsTiled(image.tiff) != 0 ? ReadTiles<Sample>(image) : ReadStrips<Sample>(image);
    const auto valid = MarkValid(samples, invalid);
    return BuildHeightMap(std::move(grid), std::span<const Sample>(samples), std::span<const std::uint8_t>(valid));
}

struct SampleKind
{
    std::uint16_t format;
    std::uint16_t bits;
    HeightMap (*read)(const Image&, SampleGrid, std::optional<double>);
};

constexpr std::array sampleKinds{SampleKind{SAMPLEFORMAT_UINT, 16, &ReadSamples<std::uint16_t>},
                                 SampleKind{SAMPLEFORMAT_INT, 16, &ReadSamples<std::int16_t>},
                                 SampleKind{SAMPLEFORMAT_UINT, 32, &ReadSamples<std::uint32_t>},
                                 SampleKind{SAMPLEFORMAT_INT, 32, &ReadSamples<std::int32_t>},
                                 SampleKind{SAMPLEFORMAT_IEEEFP, 32, &ReadSamples<float>},
                                 SampleKind{SAMPLEFORMAT_IEEEFP, 64, &ReadSamples<double>}};

const SampleKind& FindSampleKind(const Image& image)
{
    const auto bits = TagOr<std::uint16_t>(image.tiff, TIFFTAG_BITSPERSAMPLE, 1);
    const auto format = TagOr<std::uint16_t>(image.tiff, TIFFTAG_SAMPLEFORMAT, SAMPLEFORMAT_UINT);
    const auto kind = std::ranges::find_if(
        sampleKinds, [&](const SampleKind& known) { return known.format == format && known.bits == bits; });
    if (kind == sampleKinds.end())
    {
        throw Error(image.file, "BitsPerSample, SampleFormat",
                    fmt::format("samples of {} bits in format {} are no heights", bits, format),
                    "Export the heights as integers of 16 or 32 bits or as floats of 32 or 64 bits");
    }
    return *kind;
}

std::vector<std::string> NotesOnImage(const Image& image, const GridOptions& options)
{
    std::vector<std::string> notes;
    const bool byColumns = options.alongX == ImageAxis::Columns;
    notes.push_back(fmt::format("{} are x, {} are y: {} mm and {} mm from sample to sample.",
                                byColumns ? "Columns" : "Rows", byColumns ? "rows" : "columns", options.spacingMm.x,
                                options.spacingMm.y));
    if (options.invalid)
    {
        notes.push_back(fmt::format("Samples of the value {} are invalid.", *options.invalid));
    }
    if (TIFFLastDirectory(image.tiff) == 0)
    {
        notes.push_back("The file has further pages, which were ignored.");
    }
    return notes;
}
} // namespace

HeightMap ReadTiff(const std::filesystem::path& file, const GridOptions& options)
{
    RequireReadableFile(file);
    const Listening heard;
    // "m": not mapped into memory, where a file that shrinks while it is read would end the process.
    const std::unique_ptr<TIFF, CloseTiff> tiff(TIFFOpen(file.c_str(), "rm"));
    if (!tiff)
    {
        throw Error(file, "header", "this cannot be read as a TIFF file" + heard.Cause(),
                    "The file is truncated, damaged or of another format: copy or export it again");
    }
    Image image{file, heard, tiff.get()};
    image.columns = TagOr(image.tiff, TIFFTAG_IMAGEWIDTH, std::uint32_t{0});
    image.rows = TagOr(image.tiff, TIFFTAG_IMAGELENGTH, std::uint32_t{0});
    static_cast<void>(CheckedSampleCount(file, "ImageWidth, ImageLength", image.columns, image.rows));
    RequireGreyImage(image);
    const SampleKind& kind = FindSampleKind(image);
    SampleGrid grid{file,
                    image.columns,
                    image.rows,
                    options.alongX,
                    options.offsetMm,
                    options.spacingMm,
                    NotesOnImage(image, options)};
    HeightMap map = kind.read(image, std::move(grid), options.invalid);
    for (const std::string& warning : heard.Warnings())
    {
        map.notes.push_back("libtiff warned: " + warning);
    }
    return map;
}
} // namespace Mu::Host
