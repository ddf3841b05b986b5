#include <Host/Pictures/Picture.h>

#include <Host/Pictures/AxesPainter.h>
#include <Host/Pictures/GraphicPainter.h>
#include <Host/Pictures/PictureStyle.h>
#include <Host/Pictures/ResultPanel.h>
#include <Host/ResultTable.h>

#include <TaPipe/TpGraphic.h>
#include <TaVision/TvImageMsg.h>
#include <TaVision/TvProfileMsg.h>
#include <TaVision/TvSurfaceMsg.h>

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

namespace Mu::Host
{
namespace
{
constexpr double margin = 32;
constexpr double panelWidth = 520;
constexpr double titleHeight = 66;
constexpr double noteHeight = 22;
constexpr std::size_t mostNotes = 5;
constexpr double notesHeight = (mostNotes + 0.5) * noteHeight;
constexpr double lowest = 420; ///< height of a picture

/// A profile whose height is less than this share of its width is stretched.
constexpr double flattest = 1.0 / 20;

bool Is(void* message, zType type)
{
    return xzCastClass_ObjectIs(message, type);
}

/// A little more than the data takes, so that what lies on its edge is seen.
Range WithRoom(const Range& range)
{
    constexpr double share = 0.02;
    return {range.low - share * range.Extent(), range.high + share * range.Extent()};
}

/// The name of an axis, with what it counts.
std::string AxisName(const char* axis, const auto& data)
{
    return fmt::format("{} ({})", axis, data.IsInMm() ? "mm" : "samples");
}

bool IsFlat(const ProfilePlot& profile)
{
    return profile.Up().Extent() < flattest * profile.Across().Extent();
}

Area RoomOfResults()
{
    const double top = margin + titleHeight;
    return {pictureWidth - margin - panelWidth, top, panelWidth, pictureHeight - margin - top};
}

/// The room for the frame of the data; that right of it for axes and colours is part of it.
Area RoomOfData(const ScanResult& result)
{
    const Area panel = RoomOfResults();
    const double right = HasMeasurements(result.results) ? panel.left - margin : pictureWidth - margin;
    return {margin, panel.top, right - margin, panel.height - axisRoomBelow - notesHeight};
}
} // namespace

Picture::Picture(const PictureContent& content, PictureFormat format)
    : shown(Look(content.scan))
    , view(Fit(shown, RoomOfData(*content.result)))
    , canvas(format, pictureWidth, Height(*content.result))
{
    DrawTitle(*content.result);
    DrawScan(content.scan);
    DrawGraphics(content.graphics);
    const Area panel = RoomOfResults();
    if (HasMeasurements(content.result->results))
    {
        DrawResults(canvas, panel, content.result->results);
    }
    DrawNotes(HasMeasurements(content.result->results) ? panel.left - 2 * margin : pictureWidth - 2 * margin);
}

Picture::Shown Picture::Look(void* scan)
{
    if (Is(scan, zTypeOf(TvSurfaceMsg)))
    {
        return SurfaceImage(scan);
    }
    if (Is(scan, zTypeOf(TvProfileMsg)))
    {
        return ProfilePlot(scan);
    }
    if (Is(scan, zTypeOf(TvImageMsg)))
    {
        return ImagePixels(scan);
    }
    return {};
}

std::optional<View> Picture::Fit(const Shown& shown, const Area& room)
{
    const auto inner = [&room](double right) -> Area {
        return {room.left + axisRoomLeft, room.top, room.width - axisRoomLeft - right, room.height};
    };
    if (const auto* const surface = std::get_if<SurfaceImage>(&shown); surface != nullptr && surface->HasExtent())
    {
        return View::Fitted(Plane::XY, inner(barRoom), WithRoom(surface->Across()), WithRoom(surface->Up()),
                            Scales::Equal);
    }
    if (const auto* const profile = std::get_if<ProfilePlot>(&shown); profile != nullptr && profile->HasPoints())
    {
        return View::Fitted(Plane::XZ, inner(profile->Intensities() ? barRoom : margin), profile->Across(),
                            profile->Up(), IsFlat(*profile) ? Scales::Free : Scales::Equal);
    }
    if (const auto* const image = std::get_if<ImagePixels>(&shown); image != nullptr && image->HasExtent())
    {
        return View::Fitted(Plane::Image, inner(margin), image->Across(), image->Up(), Scales::Equal);
    }
    return std::nullopt;
}

/// What the data with its notes and the results take.
double Picture::Height(const ScanResult& result) const
{
    const double data = (view ? view->Frame().Bottom() + axisRoomBelow : margin + titleHeight) + notesHeight;
    const double table = margin + titleHeight + ResultsHeight(result.results);
    return std::ceil(std::clamp(std::max(data, table) + margin, lowest, pictureHeight));
}

void Picture::DrawTitle(const ScanResult& result)
{
    const TextStyle nameStyle{26, ink, Weight::Bold};
    const TextStyle sizeStyle{17, quietInk, Weight::Normal};
    const double width = pictureWidth - 2 * margin;
    const std::string size = canvas.Fitted(SizeText(result), sizeStyle, width / 2);
    const std::string name = canvas.Fitted(result.name, nameStyle, width - canvas.TextWidth(size, sizeStyle) - margin);
    canvas.Text(name, {margin, margin + 26}, nameStyle);
    canvas.Text(size, {margin + canvas.TextWidth(name, nameStyle) + 18, margin + 26}, sizeStyle);
}

void Picture::DrawScan(void* scan)
{
    if (!view)
    {
        notes.emplace_back(std::holds_alternative<SurfaceImage>(shown) ? "the surface has no points, and is not drawn"
                           : std::holds_alternative<ProfilePlot>(shown)
                               ? "the profile has no valid points, and is not drawn"
                           : std::holds_alternative<ImagePixels>(shown) ? "the image has no pixels, and is not drawn"
                                                                        : "the scan is neither a surface nor a profile "
                                                                          "nor an image, and is not drawn");
        return;
    }
    if (const auto* const surface = std::get_if<SurfaceImage>(&shown))
    {
        Draw(*surface);
    }
    else if (const auto* const profile = std::get_if<ProfilePlot>(&shown))
    {
        const double y = TvProfileMsg_Offset(scan).y;
        depth = std::isfinite(y) ? y : 0;
        Draw(*profile);
    }
    else if (const auto* const image = std::get_if<ImagePixels>(&shown))
    {
        Draw(*image);
    }
}

void Picture::Draw(const SurfaceImage& surface)
{
    canvas.Image(surface.Draw(*view), {view->Frame().left, view->Frame().top});
    DrawAxes(canvas, *view, AxisName("x", surface), AxisName("y", surface));
    DrawInvalidKey(canvas, view->Frame());
    notes.push_back(surface.Sampling(*view));
    placesGraphics = surface.IsInMm();
    if (surface.Heights())
    {
        const bool isInMm = surface.HeightAxis().IsInMm();
        DrawColourBar(canvas, view->Frame(), *surface.Heights(), fmt::format("z ({})", isInMm ? "mm" : "counts"));
        depth = isInMm ? surface.Heights()->Middle() : 0;
    }
}

void Picture::Draw(const ProfilePlot& profile)
{
    canvas.Clip(view->Frame());
    profile.Draw(canvas, *view);
    canvas.EndClip();
    DrawAxes(canvas, *view, AxisName("x", profile), AxisName("z", profile));
    placesGraphics = profile.IsInMm();
    if (profile.Intensities())
    {
        DrawColourBar(canvas, view->Frame(), *profile.Intensities(), "intensity");
    }
    if (IsFlat(profile))
    {
        const double stretch =
            profile.Across().Extent() / view->Frame().width * view->Frame().height / profile.Up().Extent();
        notes.push_back(fmt::format("heights are stretched {:.3g} times", stretch));
    }
}

void Picture::Draw(const ImagePixels& image)
{
    canvas.Image(image.Draw(*view), {view->Frame().left, view->Frame().top});
    DrawAxes(canvas, *view, "x (px)", "y (px)");
    if (const std::string note = image.Note(); !note.empty())
    {
        notes.push_back(note);
    }
}

void Picture::DrawGraphics(const std::vector<void*>& graphics)
{
    if (!view || graphics.empty())
    {
        return;
    }
    if (!placesGraphics)
    {
        notes.emplace_back("offset or scale of the scan are of no use: the axes count samples, graphics are not drawn");
        return;
    }
    GraphicPainter painter(canvas, *view, depth);
    std::ranges::for_each(graphics, [&painter](void* graphic) { painter.Draw(graphic); });
    painter.Finish();
    std::ranges::copy(painter.PlaneNotes(), std::back_inserter(notes));
    const LeftOut& missing = painter.Missing();
    if (missing.notANumber > 0)
    {
        notes.insert(notes.begin(), fmt::format("not drawn: {} graphic element{} with coordinates that are no numbers",
                                                missing.notANumber, missing.notANumber == 1 ? "" : "s"));
    }
    if (missing.tooMany > 0)
    {
        notes.insert(notes.begin(), fmt::format("not drawn: {} graphic element{} beyond what a picture holds",
                                                missing.tooMany, missing.tooMany == 1 ? "" : "s"));
    }
}

void Picture::DrawNotes(double width)
{
    const TextStyle style{14.5, quietInk, Weight::Normal};
    const double bottom = view ? view->Frame().Bottom() + axisRoomBelow : margin + titleHeight;
    double line = bottom + 1.5 * noteHeight;
    for (std::size_t i = 0; i < std::min(notes.size(), mostNotes); ++i)
    {
        canvas.Text(canvas.Fitted(notes[i], style, width), {margin, line}, style);
        line += noteHeight;
    }
}

std::string DrawPicture(const PictureContent& content, PictureFormat format)
{
    return Picture(content, format).Encode();
}
} // namespace Mu::Host
