#include <Host/PngReader.h>

#include <Host/Error.h>
#include <Host/ScanFile.h>

#include <fmt/format.h>
#include <png.h>

#include <algorithm>
#include <array>
#include <bit>
#include <csetjmp>
#include <cstdio>
#include <cstring>
#include <limits>
#include <memory>
#include <span>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

namespace Mu::Host
{
namespace
{
/// What libpng says of a file. Plain memory, because libpng jumps out of the function that fills it.
struct Words
{
    std::array<char, 96> error{};
    std::array<std::array<char, 96>, 4> warnings{}; ///< the first few; those not used are empty
};

template <std::size_t N>
void Copy(std::array<char, N>& text, const char* words)
{
    std::strncpy(text.data(), words, N - 1);
}

[[noreturn]] void HearError(png_structp png, const char* words)
{
    Copy(static_cast<Words*>(png_get_error_ptr(png))->error, words);
    png_longjmp(png, 1);
}

void HearWarning(png_structp png, const char* words)
{
    for (auto& warning : static_cast<Words*>(png_get_error_ptr(png))->warnings)
    {
        if (warning[0] == '\0')
        {
            Copy(warning, words);
            return;
        }
    }
}

struct CloseFile
{
    void operator()(std::FILE* stream) const
    {
        std::fclose(stream);
    }
};

/// What the head of an image says.
struct Head
{
    png_uint_32 columns = 0;
    png_uint_32 rows = 0;
    int bits = 0;
    int colours = 0;
    int interlaced = 0;
    bool hasMark = false; ///< grey of the value `mark` is transparent
    png_uint_16 mark = 0;
    bool hasTransparency = false;
};

/// A PNG file that is being read. libpng gives up by a jump, which must not pass over anything that needs an end: so
/// each member that calls it does this inside `Try`, with plain variables only.
class Image
{
public:
    explicit Image(const std::filesystem::path& path)
        : file(path)
    {
        RequireReadableFile(file);
        stream.reset(std::fopen(file.c_str(), "rb"));
        if (stream != nullptr)
        {
            png = png_create_read_struct(PNG_LIBPNG_VER_STRING, &words, &HearError, &HearWarning);
        }
        if (png != nullptr)
        {
            info = png_create_info_struct(png);
        }
        if (info == nullptr)
        {
            png_destroy_read_struct(&png, &info, nullptr);
            throw Error(file, "", "the file cannot be opened", "Close other programs and try again");
        }
    }

    ~Image()
    {
        png_destroy_read_struct(&png, &info, nullptr);
    }

    Image(const Image&) = delete;
    Image& operator=(const Image&) = delete;

    void ReadHead();

    /// Asks for samples as heights or as grey or colour of 8 bits.
    void ExpectCounts();
    void ExpectBytes();

    /// All rows, from the first, of samples of this type as `Expect...` asked for them.
    template <typename Sample>
    [[nodiscard]] std::vector<Sample> ReadRows();

    [[nodiscard]] const Head& Known() const
    {
        return head;
    }

    [[nodiscard]] bool IsGrey() const
    {
        return (head.colours & PNG_COLOR_MASK_COLOR) == 0;
    }

    [[nodiscard]] bool HasAlpha() const
    {
        return (head.colours & PNG_COLOR_MASK_ALPHA) != 0;
    }

    void NoteWarnings(std::vector<std::string>& notes) const
    {
        for (const auto& warning : words.warnings)
        {
            if (warning[0] != '\0')
            {
                notes.push_back("libpng warned: " + Printable(warning.data()));
            }
        }
    }

    const std::filesystem::path& file;

private:
    // noinline: what is in registers at the jump is lost, and callers have much there.
    template <typename Calls>
    [[gnu::noinline]] bool Try(const Calls& calls)
    {
        if (setjmp(png_jmpbuf(png)) != 0)
        {
            return false;
        }
        calls();
        return true;
    }

    [[noreturn]] void Refuse(const std::string& place) const
    {
        throw Error(file, place, fmt::format("this cannot be read ({})", Printable(words.error.data())),
                    "The file is truncated or damaged: copy or export it again");
    }

    void RequireDataInFile() const;

    std::unique_ptr<std::FILE, CloseFile> stream;
    Words words;
    png_structp png = nullptr;
    png_infop info = nullptr;
    Head head;
};

void Image::ReadHead()
{
    const bool whole = Try([this] {
        // Our own bounds are smaller and say more; a chunk beside the image may still not fill the memory.
        png_set_user_limits(png, PNG_UINT_31_MAX, PNG_UINT_31_MAX);
        png_set_chunk_malloc_max(png, png_alloc_size_t{8} << 20);
        png_set_chunk_cache_max(png, 128);
        png_init_io(png, stream.get());
        png_read_info(png, info);
        int ignored = 0;
        png_get_IHDR(png, info, &head.columns, &head.rows, &head.bits, &head.colours, &head.interlaced, &ignored,
                     &ignored);
        png_color_16p mark = nullptr;
        head.hasTransparency = png_get_tRNS(png, info, nullptr, nullptr, &mark) != 0;
        head.hasMark = head.hasTransparency && head.colours == PNG_COLOR_TYPE_GRAY && mark != nullptr;
        head.mark = head.hasMark ? mark->gray : png_uint_16{0};
    });
    if (!whole)
    {
        Refuse("head");
    }
    static_cast<void>(CheckedSampleCount(file, "width and height", head.columns, head.rows));
    RequireDataInFile();
}

/// Deflate makes at most 1032 bytes of one: a file that claims more is refused before there is memory for it.
void Image::RequireDataInFile() const
{
    constexpr std::uint64_t mostPerByte = 1032;
    std::error_code failure;
    const std::uint64_t fileSize = std::filesystem::file_size(file, failure);
    const std::uint64_t bitsPerSample = std::uint64_t{png_get_channels(png, info)} * static_cast<unsigned>(head.bits);
    const std::uint64_t bytes = std::uint64_t{head.columns} * head.rows * bitsPerSample / 8;
    if (failure || bytes / mostPerByte > fileSize)
    {
        throw Error(file, "width and height",
                    fmt::format("{} x {} samples cannot be in a file of {} bytes", head.columns, head.rows, fileSize),
                    "The file is truncated or damaged: copy or export it again");
    }
}

void Image::ExpectCounts()
{
    const bool whole = Try([this] {
        png_set_packing(png);
        if (std::endian::native == std::endian::little)
        {
            png_set_swap(png);
        }
        png_set_interlace_handling(png);
        png_read_update_info(png, info);
    });
    if (!whole)
    {
        Refuse("head");
    }
}

void Image::ExpectBytes()
{
    const bool whole = Try([this] {
        if (head.colours == PNG_COLOR_TYPE_PALETTE)
        {
            png_set_palette_to_rgb(png);
        }
        if (head.colours == PNG_COLOR_TYPE_GRAY)
        {
            png_set_expand_gray_1_2_4_to_8(png);
        }
        png_set_scale_16(png);
        png_set_strip_alpha(png);
        png_set_interlace_handling(png);
        png_read_update_info(png, info);
    });
    if (!whole)
    {
        Refuse("head");
    }
}

template <typename Sample>
std::vector<Sample> Image::ReadRows()
{
    const std::size_t perRow = std::size_t{head.columns} * png_get_channels(png, info);
    if (png_get_rowbytes(png, info) != perRow * sizeof(Sample))
    {
        throw Error(file, "head", "samples of this kind cannot be read", "Export the image in another way");
    }
    std::vector<Sample> samples(perRow * head.rows);
    std::vector<png_bytep> rows(head.rows);
    for (std::size_t row = 0; row < rows.size(); ++row)
    {
        rows[row] = reinterpret_cast<png_bytep>(samples.data() + row * perRow);
    }
    const bool whole = Try([this, all = rows.data()] {
        png_read_image(png, all);
        png_read_end(png, nullptr);
    });
    if (!whole)
    {
        Refuse("pixels");
    }
    return samples;
}

/// Heights, and behind each its opacity if the image has such.
template <typename Sample>
HeightMap ReadCounts(Image& image, const GridOptions& options, SampleGrid grid)
{
    const std::size_t channels = image.HasAlpha() ? 2 : 1;
    const auto samples = image.ReadRows<Sample>();
    std::vector<std::uint16_t> counts(samples.size() / channels);
    std::vector<std::uint8_t> valid(counts.size());
    const Head& head = image.Known();
    for (std::size_t i = 0; i < counts.size(); ++i)
    {
        const Sample count = samples[i * channels];
        const bool transparent = channels == 2 ? samples[i * channels + 1] == 0 : head.hasMark && count == head.mark;
        counts[i] = count;
        valid[i] = transparent || count == options.invalid ? 0 : 1;
    }
    return BuildHeightMap(std::move(grid), std::span<const std::uint16_t>(counts),
                          std::span<const std::uint8_t>(valid));
}

HeightMap ReadHeights(Image& image, const GridOptions& options)
{
    const Head& head = image.Known();
    if (!image.IsGrey())
    {
        throw Error(image.file, "colour type", "colours are no heights",
                    "Export the heights as a grey image; or give no options if this is an image to look at");
    }
    image.ExpectCounts();
    const bool byColumns = options.alongX == ImageAxis::Columns;
    std::vector<std::string> notes{fmt::format("{} are x, {} are y: {} mm and {} mm from sample to sample.",
                                               byColumns ? "Columns" : "Rows", byColumns ? "rows" : "columns",
                                               options.spacingMm.x, options.spacingMm.y)};
    if (image.HasAlpha() || head.hasMark)
    {
        notes.emplace_back("Samples that are fully transparent are invalid.");
    }
    if (options.invalid)
    {
        notes.push_back(fmt::format("Samples of the value {} are invalid.", *options.invalid));
    }
    SampleGrid grid{image.file,       head.columns,      head.rows,       options.alongX,
                    options.offsetMm, options.spacingMm, std::move(notes)};
    HeightMap map = head.bits == 16 ? ReadCounts<std::uint16_t>(image, options, std::move(grid))
                                    : ReadCounts<std::uint8_t>(image, options, std::move(grid));
    image.NoteWarnings(map.notes);
    return map;
}

/// Rec. ITU-R BT.601-7, section 2.5.1.
std::uint8_t GreyOf(const std::uint8_t* colour)
{
    return static_cast<std::uint8_t>((299 * colour[0] + 587 * colour[1] + 114 * colour[2] + 500) / 1000);
}

/// Makes grey of three channels, in place, and says how.
std::string MakeGrey(std::vector<std::uint8_t>& samples)
{
    bool equal = true;
    for (std::size_t i = 0; i < samples.size() / 3; ++i)
    {
        const std::uint8_t* const colour = samples.data() + 3 * i;
        equal = equal && colour[0] == colour[1] && colour[1] == colour[2];
        samples[i] = GreyOf(colour);
    }
    samples.resize(samples.size() / 3);
    samples.shrink_to_fit();
    return equal ? "The three channels of the image are equal: one was taken."
                 : "Colours became grey by 0.299 red + 0.587 green + 0.114 blue (Rec. ITU-R BT.601).";
}

ImageScan ReadPixels(Image& image)
{
    const Head& head = image.Known();
    image.ExpectBytes();
    ImageScan scan{head.columns, head.rows, image.ReadRows<std::uint8_t>(), {}};
    if (head.bits != 8 && head.colours != PNG_COLOR_TYPE_PALETTE)
    {
        scan.notes.push_back(fmt::format("Samples of {} bits became samples of 8 bits.", head.bits));
    }
    if (!image.IsGrey())
    {
        scan.notes.push_back(MakeGrey(scan.pixels));
    }
    if (image.HasAlpha() || head.hasTransparency)
    {
        scan.notes.emplace_back("Transparency was ignored.");
    }
    image.NoteWarnings(scan.notes);
    return scan;
}
} // namespace

Scan ReadPng(const std::filesystem::path& file, const std::optional<GridOptions>& options)
{
    Image image(file);
    image.ReadHead();
    if (options)
    {
        return ReadHeights(image, *options);
    }
    if (image.IsGrey() && image.Known().bits == 16)
    {
        RefuseWithoutSpacing(file, "16-bit PNG");
    }
    return ReadPixels(image);
}
} // namespace Mu::Host
