#include <Host/Pictures/Canvas.h>

#include <Host/Error.h>
#include <Host/Pictures/SvgText.h>
#include <Host/TextTable.h>

#include <cairo-pdf.h>
#include <cairo-svg.h>
#include <cairo.h>
#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <numbers>

namespace Mu::Host
{
namespace
{
constexpr const char* fontFamily = "DejaVu Sans";
constexpr double pointsPerUnit = 0.5;

/// No line of a picture holds more; whatever is longer is cut before it is measured.
constexpr std::size_t longestText = 400;

cairo_status_t Append(void* bytes, const unsigned char* data, unsigned int size)
{
    try
    {
        static_cast<std::string*>(bytes)->append(std::string_view(reinterpret_cast<const char*>(data), size));
        return CAIRO_STATUS_SUCCESS;
    }
    catch (...)
    {
        return CAIRO_STATUS_NO_MEMORY;
    }
}

void Check(cairo_status_t status)
{
    if (status != CAIRO_STATUS_SUCCESS)
    {
        throw Error(fmt::format("The picture cannot be drawn: {}. Close other programs, or run without --picture.",
                                cairo_status_to_string(status)));
    }
}

struct SurfaceEnd
{
    void operator()(cairo_surface_t* surface) const
    {
        cairo_surface_destroy(surface);
    }
};

struct ContextEnd
{
    void operator()(cairo_t* context) const
    {
        cairo_destroy(context);
    }
};

using SurfacePointer = std::unique_ptr<cairo_surface_t, SurfaceEnd>;
using ContextPointer = std::unique_ptr<cairo_t, ContextEnd>;

SurfacePointer MakeSurface(PictureFormat format, double width, double height, std::string& bytes)
{
    switch (format)
    {
    case PictureFormat::Svg:
        return SurfacePointer(cairo_svg_surface_create_for_stream(&Append, &bytes, width, height));
    case PictureFormat::Pdf: {
        SurfacePointer surface(
            cairo_pdf_surface_create_for_stream(&Append, &bytes, width * pointsPerUnit, height * pointsPerUnit));
        // Two runs give the same bytes.
        cairo_pdf_surface_set_metadata(surface.get(), CAIRO_PDF_METADATA_CREATE_DATE, "");
        return surface;
    }
    default:
        return SurfacePointer(
            cairo_image_surface_create(CAIRO_FORMAT_RGB24, static_cast<int>(width), static_cast<int>(height)));
    }
}

/// Text as every canvas can show it.
std::string ShownText(std::string_view text)
{
    return Shortened(XmlText(TerminalText(text.substr(0, 8 * longestText))), longestText);
}
} // namespace

struct Canvas::Drawing
{
    Drawing(PictureFormat format, double width, double height)
        : surface(MakeSurface(format, width, height, bytes))
        , context(cairo_create(surface.get()))
    {
        cairo_font_options_t* const options = cairo_font_options_create();
        // Glyphs as they are drawn, not as they suit a screen: widths are the same in all formats.
        cairo_font_options_set_hint_style(options, CAIRO_HINT_STYLE_NONE);
        cairo_font_options_set_hint_metrics(options, CAIRO_HINT_METRICS_OFF);
        cairo_font_options_set_antialias(options, CAIRO_ANTIALIAS_GRAY);
        cairo_set_font_options(context.get(), options);
        cairo_font_options_destroy(options);
        cairo_set_line_join(context.get(), CAIRO_LINE_JOIN_ROUND);
        cairo_set_line_cap(context.get(), CAIRO_LINE_CAP_ROUND);
    }

    void Set(const Colour& colour) const
    {
        cairo_set_source_rgba(context.get(), colour.red, colour.green, colour.blue, colour.alpha);
    }

    void Set(const TextStyle& style) const
    {
        cairo_select_font_face(context.get(), fontFamily, CAIRO_FONT_SLANT_NORMAL,
                               style.weight == Weight::Bold ? CAIRO_FONT_WEIGHT_BOLD : CAIRO_FONT_WEIGHT_NORMAL);
        cairo_set_font_size(context.get(), style.size);
    }

    void Path(std::span<const Place> places, const Place& moved = {}) const
    {
        for (const Place& place : places)
        {
            cairo_line_to(context.get(), place.x + moved.x, place.y + moved.y);
        }
    }

    void End(const Stroke& stroke) const
    {
        Set(stroke.colour);
        cairo_set_line_width(context.get(), stroke.width);
        cairo_stroke(context.get());
        Check(cairo_status(context.get()));
    }

    void EndFill(const Colour& colour) const
    {
        Set(colour);
        cairo_fill(context.get());
        Check(cairo_status(context.get()));
    }

    std::string bytes; ///< outlives the surface, which writes into it
    SurfacePointer surface;
    ContextPointer context;
};

Canvas::Canvas(PictureFormat pictureFormat, double pageWidth, double pageHeight)
    : format(pictureFormat)
    , width(pageWidth)
    , height(pageHeight)
    , drawing(std::make_unique<Drawing>(pictureFormat, pageWidth, pageHeight))
{
    Check(cairo_status(drawing->context.get()));
    if (format == PictureFormat::Pdf)
    {
        cairo_scale(drawing->context.get(), pointsPerUnit, pointsPerUnit);
    }
    Fill(Page(), {1, 1, 1, 1});
}

Canvas::~Canvas() = default;

Area Canvas::Page() const
{
    return {0, 0, width, height};
}

void Canvas::Fill(const Area& area, const Colour& colour)
{
    cairo_rectangle(drawing->context.get(), area.left, area.top, area.width, area.height);
    drawing->EndFill(colour);
}

void Canvas::Fill(std::span<const Place> polygon, const Colour& colour)
{
    drawing->Path(polygon);
    drawing->EndFill(colour);
}

void Canvas::Disc(const Place& centre, double radius, const Colour& colour)
{
    cairo_arc(drawing->context.get(), centre.x, centre.y, radius, 0, 2 * std::numbers::pi);
    drawing->EndFill(colour);
}

void Canvas::Ring(const Place& centre, double radius, const Stroke& stroke)
{
    cairo_arc(drawing->context.get(), centre.x, centre.y, radius, 0, 2 * std::numbers::pi);
    cairo_close_path(drawing->context.get());
    drawing->End(stroke);
}

void Canvas::Line(std::span<const Place> places, const Stroke& stroke)
{
    drawing->Path(places);
    drawing->End(stroke);
}

void Canvas::ClosedLine(std::span<const Place> places, const Stroke& stroke)
{
    drawing->Path(places);
    cairo_close_path(drawing->context.get());
    drawing->End(stroke);
}

void Canvas::Outline(const Area& area, const Stroke& stroke)
{
    cairo_rectangle(drawing->context.get(), area.left, area.top, area.width, area.height);
    drawing->End(stroke);
}

void Canvas::Marks(std::span<const Place> centres, std::span<const Place> polygon, const Colour& colour)
{
    // A path of all of them takes more than proportional time.
    constexpr std::size_t inOneGo = 256;
    for (std::size_t i = 0; i < centres.size(); ++i)
    {
        drawing->Path(polygon, centres[i]);
        cairo_close_path(drawing->context.get());
        cairo_new_sub_path(drawing->context.get());
        if ((i + 1) % inOneGo == 0)
        {
            drawing->EndFill(colour);
        }
    }
    drawing->EndFill(colour);
}

void Canvas::Image(const PixelImage& image, const Place& upperLeft)
{
    const SurfacePointer surface(
        cairo_image_surface_create(CAIRO_FORMAT_ARGB32, static_cast<int>(image.width), static_cast<int>(image.height)));
    Check(cairo_surface_status(surface.get()));
    unsigned char* const data = cairo_image_surface_get_data(surface.get());
    const auto stride = static_cast<std::size_t>(cairo_image_surface_get_stride(surface.get()));
    for (std::size_t row = 0; row < image.height; ++row)
    {
        std::memcpy(data + row * stride, image.pixels.data() + row * image.width, image.width * sizeof(std::uint32_t));
    }
    cairo_surface_mark_dirty(surface.get());
    cairo_set_source_surface(drawing->context.get(), surface.get(), upperLeft.x, upperLeft.y);
    cairo_pattern_set_filter(cairo_get_source(drawing->context.get()), CAIRO_FILTER_NEAREST);
    cairo_paint(drawing->context.get());
    Check(cairo_status(drawing->context.get()));
}

void Canvas::Clip(const Area& area)
{
    cairo_save(drawing->context.get());
    cairo_rectangle(drawing->context.get(), area.left, area.top, area.width, area.height);
    cairo_clip(drawing->context.get());
}

void Canvas::EndClip()
{
    cairo_restore(drawing->context.get());
}

void Canvas::Text(std::string_view text, const Place& place, const TextStyle& style, TextFrom from, TextTurn turn)
{
    PlacedText placed{ShownText(text), place, style.size, turn, {}};
    const double length = TextWidth(placed.text, style);
    const double back = from == TextFrom::Left ? 0 : from == TextFrom::Middle ? length / 2 : length;
    const double rise = 0.8 * style.size;
    const double drop = 0.25 * style.size;
    const bool isUpwards = turn == TextTurn::Upwards;
    (isUpwards ? placed.start.y : placed.start.x) += isUpwards ? back : -back;
    placed.extents = isUpwards ? Area{place.x - rise, placed.start.y - length, rise + drop, length}
                               : Area{placed.start.x, place.y - rise, length, rise + drop};
    cairo_t* const context = drawing->context.get();
    cairo_save(context);
    drawing->Set(style);
    drawing->Set(style.colour);
    cairo_translate(context, placed.start.x, placed.start.y);
    cairo_rotate(context, isUpwards ? -std::numbers::pi / 2 : 0);
    cairo_move_to(context, 0, 0);
    cairo_show_text(context, placed.text.c_str());
    cairo_new_path(context);
    cairo_restore(context);
    Check(cairo_status(context));
    texts.push_back(std::move(placed));
}

double Canvas::TextWidth(std::string_view text, const TextStyle& style) const
{
    cairo_text_extents_t extents;
    drawing->Set(style);
    cairo_text_extents(drawing->context.get(), ShownText(text).c_str(), &extents);
    Check(cairo_status(drawing->context.get()));
    return extents.x_advance;
}

std::string Canvas::Fitted(std::string_view text, const TextStyle& style, double most) const
{
    std::string shown = ShownText(text);
    for (std::size_t columns = DisplayWidth(shown); columns > 0 && TextWidth(shown, style) > most; --columns)
    {
        // Close to the end at once: what fits is about this share of it.
        const double share = most / TextWidth(shown, style);
        columns =
            std::min(columns, static_cast<std::size_t>(std::ceil(1.1 * share * static_cast<double>(columns))) + 1);
        shown = Shortened(shown, columns - 1);
    }
    return shown;
}

const std::vector<PlacedText>& Canvas::Texts() const
{
    return texts;
}

Colour Canvas::PixelAt(std::size_t column, std::size_t row) const
{
    cairo_surface_flush(drawing->surface.get());
    const unsigned char* const data = cairo_image_surface_get_data(drawing->surface.get());
    if (data == nullptr || static_cast<double>(column) >= width || static_cast<double>(row) >= height)
    {
        return {0, 0, 0, 0};
    }
    const auto stride = static_cast<std::size_t>(cairo_image_surface_get_stride(drawing->surface.get()));
    std::uint32_t pixel = 0;
    std::memcpy(&pixel, data + row * stride + column * sizeof(pixel), sizeof(pixel));
    return ColourOf(pixel | 0xFF000000U);
}

std::string Canvas::Encode()
{
    if (format == PictureFormat::Png)
    {
        Check(cairo_surface_write_to_png_stream(drawing->surface.get(), &Append, &drawing->bytes));
        return drawing->bytes;
    }
    cairo_show_page(drawing->context.get());
    cairo_surface_finish(drawing->surface.get());
    Check(cairo_surface_status(drawing->surface.get()));
    return format == PictureFormat::Svg ? WithText(drawing->bytes, texts) : drawing->bytes;
}
} // namespace Mu::Host
