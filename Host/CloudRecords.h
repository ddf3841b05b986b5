#pragma once

#include <Host/BlockReader.h>
#include <Host/NumberType.h>
#include <Host/PointCloud.h>

#include <array>
#include <bit>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace Mu::Host
{
/// What a record, the text or the bytes of one point, has one after the other.
struct CloudField
{
    std::string name;
    NumberType type = NumberType::Float32;
    std::size_t count = 1;                ///< numbers in a row
    std::optional<NumberType> lengthType; ///< before each list its length, of this integer type, instead of `count`
};

/// Takes the points out of records.
///
/// Needed are fields x, y and z. Intensities come, if there are any, from the first of these that is a single number:
///
/// | fields                         | intensity                                                              |
/// |--------------------------------|------------------------------------------------------------------------|
/// | `intensity`, `scalar_intensity`| 8-bit unsigned as they are, others from their lowest to their highest  |
/// |                                | finite value spread over 0 .. 255                                      |
/// | `rgb`, `rgba` of 32 bits       | luminance of the lower three bytes, red the highest; of floats the bits|
/// | `red`, `green`, `blue`         | luminance, if all three are of 8 bits unsigned                         |
///
/// Luminance is 0.299 red + 0.587 green + 0.114 blue (Recommendation ITU-R BT.601, 2.5.1), rounded. In text, what
/// should be 8 bits and is beyond counts as the nearest, NaN as 0. Of others, a value that is not finite as a 32-bit
/// float counts as 0. Case does not matter in the names of intensities and colours.
class CloudRecords
{
public:
    /// @throws Error  if x, y or z is missing or no single number, or a field that is used stands twice
    CloudRecords(const std::filesystem::path& path, std::vector<CloudField> recordFields);

    /// Bytes of a record without its lists, but with their lengths.
    [[nodiscard]] std::uint64_t FixedSize() const;

    /// @throws Error  what `reader` throws; if the file cannot hold so many records; in text, if a line has another
    /// number
    ///                of values than a record, or a value is no number; if the length of a list is negative
    void ReadText(BlockReader& reader, std::size_t count);
    void ReadBinary(BlockReader& reader, std::size_t count, std::endian order);

    /// Reads records of which all first fields stand together, then all second ones and so on, in little endian.
    /// @param bytes  count * FixedSize() of them; there are no lists
    void ReadColumns(std::span<const char> bytes, std::size_t count);

    /// The points that were read, width * height, and notes on what was made of the fields.
    [[nodiscard]] PointCloud Finish(std::size_t width, std::size_t height);

private:
    enum class Brightness
    {
        None,
        Grey,
        Scaled,
        Packed,
        Colour
    };

    /// A field and where its number goes: x, y, z, then one or three for the brightness.
    struct Use
    {
        CloudField field;
        std::optional<std::size_t> slot;
        bool isPackedFloat = false; ///< in text the bits of the float are wanted
    };

    /// Where the numbers of a slot lie in bytes.
    struct Column
    {
        std::size_t offset;
        std::size_t stride;
        std::size_t slot;
        NumberDecoder decode;
    };

    using Values = std::array<double, 6>;

    [[nodiscard]] Use* Find(std::string_view name, bool (*isSame)(std::string_view, std::string_view));
    void UsePositions();
    [[nodiscard]] bool UseGrey();
    [[nodiscard]] bool UsePacked();
    [[nodiscard]] bool UseColour();
    void NoteIgnored();
    void Reserve(const BlockReader& reader, std::size_t count, std::uint64_t fewestBytes);
    void ReadLine(const BlockReader& reader, std::string_view line);
    void AddRecords(const char* bytes, std::size_t count, std::span<const Column> columns);
    void ReadWithLists(BlockReader& reader, std::size_t count, std::endian order);
    void Add(const Values& values);
    [[nodiscard]] float BrightnessOf(const Values& values) const;
    [[nodiscard]] std::vector<std::uint8_t> MakeIntensity();

    std::filesystem::path file;
    std::vector<Use> uses;
    Brightness brightness = Brightness::None;
    std::vector<Vector3> points;
    std::vector<float> brightnesses;
    std::vector<std::string> notes;
};

/// Passes over records whose values are not wanted.
/// @throws Error  what `reader` throws; if the length of a list is negative
void SkipTextRecords(BlockReader& reader, std::uint64_t count);
void SkipBinaryRecords(BlockReader& reader, std::span<const CloudField> fields, std::uint64_t count, std::endian order);
} // namespace Mu::Host
