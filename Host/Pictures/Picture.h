#pragma once

#include <Host/Pictures/Canvas.h>
#include <Host/Pictures/ImagePixels.h>
#include <Host/Pictures/ProfilePlot.h>
#include <Host/Pictures/SurfaceImage.h>
#include <Host/Pictures/View.h>
#include <Host/RunResult.h>

#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace Mu::Host
{
/// The width of a picture, and its height at most: it is as high as what it shows.
inline constexpr double pictureWidth = 1600;
inline constexpr double pictureHeight = 1000;

/// What a picture shows. All of it outlives the picture.
struct PictureContent
{
    void* scan = nullptr;        ///< TvSurfaceMsg, TvProfileMsg or TvImageMsg; of anything else a note is drawn
    std::vector<void*> graphics; ///< TpGraphic each, drawn in this order
    const ScanResult* result = nullptr;
};

/// A scan with all that tools found on it: its data with axes, their graphics, and their measurements beside it.
///
/// Surfaces are seen along z, y up; profiles along y, z up; images as they are, row 0 on top. A mm is as long on both
/// axes, but for profiles that would be flatter than 20 to 1: their heights are stretched, and a note says so. What is
/// left out is counted in a note below the data.
class Picture
{
public:
    Picture(const PictureContent& content, PictureFormat format);

    /// The view of the data; none if nothing of it can be shown.
    [[nodiscard]] const std::optional<View>& DataView() const
    {
        return view;
    }

    [[nodiscard]] const Canvas& Page() const
    {
        return canvas;
    }

    /// The file. Ends the picture.
    [[nodiscard]] std::string Encode()
    {
        return canvas.Encode();
    }

private:
    using Shown = std::variant<std::monostate, SurfaceImage, ProfilePlot, ImagePixels>;

    [[nodiscard]] static Shown Look(void* scan);
    [[nodiscard]] static std::optional<View> Fit(const Shown& shown, const Area& room);
    [[nodiscard]] double Height(const ScanResult& result) const;

    void DrawTitle(const ScanResult& result);
    void DrawScan(void* scan);
    void Draw(const SurfaceImage& surface);
    void Draw(const ProfilePlot& profile);
    void Draw(const ImagePixels& image);
    void DrawGraphics(const std::vector<void*>& graphics);
    void DrawNotes(double width);

    Shown shown;
    std::optional<View> view;
    Canvas canvas;
    double depth = 0; ///< of the plane of the picture, in mm
    bool placesGraphics = true;
    std::vector<std::string> notes;
};

/// A picture as a file. @throws Error if there is no memory
[[nodiscard]] std::string DrawPicture(const PictureContent& content, PictureFormat format);
} // namespace Mu::Host
