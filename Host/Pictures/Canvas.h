#pragma once

#include <Host/Pictures/ColourMap.h>
#include <Host/Pictures/View.h>

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace Mu::Host
{
enum class PictureFormat
{
    Png, ///< a unit of the page is a pixel
    Svg,
    Pdf, ///< a unit of the page is half a point
};

/// Pixels from the upper left, row by row, each 0xAARRGGBB; either opaque or 0.
struct PixelImage
{
    std::size_t width = 0;
    std::size_t height = 0;
    std::vector<std::uint32_t> pixels;
};

enum class Weight
{
    Normal,
    Bold,
};

struct TextStyle
{
    double size = 16; ///< of the type, in units of the page
    Colour colour;
    Weight weight = Weight::Normal;
};

/// Which end of its line a text is set from.
enum class TextFrom
{
    Left,
    Middle,
    Right,
};

/// Which way a text runs.
enum class TextTurn
{
    Across,
    Upwards,
};

/// A text on the page.
struct PlacedText
{
    std::string text;
    Place start; ///< of the line that it stands on
    double size = 0;
    TextTurn turn = TextTurn::Across;
    Area extents;
};

struct Stroke
{
    double width = 1;
    Colour colour;
};

/// A page that is drawn on. Places must be finite, and near the page; texts may have any bytes. The same calls give the
/// same bytes, on one machine at any rate: fonts are those of the system, DejaVu Sans if it is there.
/// @throws Error  from any of the calls, if there is no memory
class Canvas
{
public:
    Canvas(PictureFormat pictureFormat, double pageWidth, double pageHeight);
    Canvas(const Canvas&) = delete;
    Canvas& operator=(const Canvas&) = delete;
    ~Canvas();

    [[nodiscard]] Area Page() const;

    void Fill(const Area& area, const Colour& colour);
    void Fill(std::span<const Place> polygon, const Colour& colour);
    void Disc(const Place& centre, double radius, const Colour& colour);
    void Ring(const Place& centre, double radius, const Stroke& stroke);

    /// A line through places; one that is closed goes on to the first of them.
    void Line(std::span<const Place> places, const Stroke& stroke);
    void ClosedLine(std::span<const Place> places, const Stroke& stroke);
    void Outline(const Area& area, const Stroke& stroke);

    /// The same polygon around many places, in one go.
    void Marks(std::span<const Place> centres, std::span<const Place> polygon, const Colour& colour);

    /// An image, a pixel to a unit.
    void Image(const PixelImage& image, const Place& upperLeft);

    /// Nothing is drawn outside `area` until `EndClip`.
    void Clip(const Area& area);
    void EndClip();

    /// A text of one line, on a line through `place`. Control characters and bytes that are no UTF-8 are replaced.
    void Text(std::string_view text, const Place& place, const TextStyle& style, TextFrom from = TextFrom::Left,
              TextTurn turn = TextTurn::Across);
    [[nodiscard]] double TextWidth(std::string_view text, const TextStyle& style) const;

    /// The text, cut with an ellipsis to what fits into `width`.
    [[nodiscard]] std::string Fitted(std::string_view text, const TextStyle& style, double width) const;

    /// All texts so far.
    [[nodiscard]] const std::vector<PlacedText>& Texts() const;

    /// The colour of a pixel of a page that is a PNG.
    [[nodiscard]] Colour PixelAt(std::size_t column, std::size_t row) const;

    /// The page as a file. Ends it: nothing can be drawn afterwards.
    [[nodiscard]] std::string Encode();

private:
    struct Drawing;

    PictureFormat format;
    double width;
    double height;
    std::unique_ptr<Drawing> drawing;
    std::vector<PlacedText> texts;
};
} // namespace Mu::Host
