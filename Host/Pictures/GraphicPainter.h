#pragma once

#include <Host/Pictures/Canvas.h>
#include <Host/Pictures/View.h>

#include <zApi/zTypes.h>

#include <cstddef>
#include <span>
#include <string>
#include <vector>

namespace Mu::Host
{
/// How large a pixel of the screen is on the page: widths and sizes of elements are told in these.
inline constexpr double screenPixel = 1.6;

inline constexpr Colour regionColour{1.00, 0.27, 0.69, 1};
inline constexpr Colour planeColour{1.00, 0.45, 0.10, 1};
inline constexpr Colour positionColour{1.00, 1.00, 1.00, 1};

/// What of the graphics is not in the picture.
struct LeftOut
{
    std::size_t notANumber = 0; ///< elements, and points of point sets, with a coordinate that is null or not finite
    std::size_t tooMany = 0;    ///< elements, and points of point sets, beyond what a picture draws
};

/// Draws what tools sent over the data, each element where the view puts it, and cut at the frame.
///
/// | element | drawn as |
/// |---|---|
/// | points | a mark each: cross, square or dot |
/// | lines | a polyline with its arrow heads; one that is seen end on is a dot |
/// | ray | the half-line, as far as the frame; along the view a dot |
/// | label | its text on a plate, moved into the frame |
/// | position | result: ring with cross; reference: diamond; anchor: triangle that stands on the place |
/// | plane | the line in which it meets the plane of the picture, numbered, and a note |
/// | region | its outline: of a box seen from the side, that of its shadow |
///
/// Everything has a dark rim, so that it stands out from any data. A line of a vertex that is null or not finite is
/// left out as a whole. Regions of profiles have x and z; on an image these are x and y.
class GraphicPainter
{
public:
    /// @param depth  where the plane of the picture lies: z of a surface's middle height, y of a profile, in mm
    GraphicPainter(Canvas& page, const View& shownView, double depth);

    /// Draws all elements of a TpGraphic; nothing if it is something else. Labels and positions come when all is drawn.
    void Draw(void* graphic);

    /// Draws labels and positions, on top of everything.
    void Finish();

    [[nodiscard]] const LeftOut& Missing() const
    {
        return missing;
    }

    /// A sentence on each plane, in the order of their numbers; of the first few only.
    [[nodiscard]] const std::vector<std::string>& PlaneNotes() const
    {
        return planeNotes;
    }

private:
    void DrawElement(void* element);
    void DrawPoints(void* element);
    void DrawLines(void* element);
    void DrawRay(void* element);
    void DrawPlane(void* element);
    void DrawRegion2d(void* element);
    void DrawRegion3d(void* element);
    void DrawLabel(void* element);
    void DrawPosition(void* element);

    void DrawPolyline(const std::vector<Place>& places, const Stroke& stroke);
    void DrawHead(const Place& tip, const Place& from, double length, const Stroke& stroke);
    void DrawDot(const Place& place, const Stroke& stroke);
    void DrawSegment(const Segment& segment, const Stroke& stroke);
    /// Whether some of it lies in the frame.
    bool DrawTrace(const Place& start, const Place& step);
    void DrawPlate(const Place& place, const std::string& line);
    void DrawOutline(std::vector<zPoint3d64f> corners);
    void DrawMarks(std::vector<Place>& places, std::span<const Place> shape, const Colour& colour);

    /// The place on the page; false if it is no number, or beyond all numbers.
    [[nodiscard]] bool Put(const zPoint3d64f& point, Place& place) const;

    Canvas& canvas;
    const View& view;
    double pictureDepth;
    LeftOut missing;
    std::size_t elements = 0;
    std::size_t marks = 0;
    std::size_t vertices = 0;
    std::vector<void*> onTop;
    std::vector<std::string> planeNotes;
    std::size_t planeCount = 0;
};
} // namespace Mu::Host
