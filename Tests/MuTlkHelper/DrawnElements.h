#pragma once

#include <MuTlkHelper/GraphicUtils.h>
#include <MuTlkHelper/TlkSurfaceGeneralized3dPoint.h>

#include <Support/GraphicElements.h>

#include <TaApi/Object.h>
#include <zApi/zArrayList.h>
#include <zApi/zLog.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <gtest/gtest.h>
#include <limits>
#include <numbers>
#include <string>
#include <vector>

// What was drawn, to the last bit: an element as its kind and the values that can be read back, beside builders of what
// is expected.

namespace Support
{
inline constexpr double NULL_VALUE = -1.7976931348623157e308;
inline constexpr double NOT_A_NUMBER = std::numeric_limits<double>::quiet_NaN();
inline constexpr double INFINITE = std::numeric_limits<double>::infinity();
inline constexpr z32u YELLOW = 0xFFFFFF00U;
inline constexpr z32u CYAN = 0xFF00FFFFU;
inline constexpr z32u COLOR = 0x80123456U;
inline constexpr double TO_RADIANS = std::numbers::pi / 180.0;

using Points = std::vector<zPoint3d64f>;

struct Drawn
{
    TaPipe::TpGraphicKind kind;
    std::vector<double> values; ///< the plain properties, then the points; floats are widened
    std::string text;

    bool operator==(const Drawn& other) const
    {
        const auto isSame = [](double a, double b) { return a == b || (std::isnan(a) && std::isnan(b)); };
        return kind == other.kind && text == other.text && std::ranges::equal(values, other.values, isSame);
    }
};

using Drawing = std::vector<Drawn>;

inline void PrintTo(const Drawn& drawn, std::ostream* out)
{
    *out << "kind " << static_cast<int>(drawn.kind) << " '" << drawn.text << "'" << std::hexfloat;
    for (const double value : drawn.values)
    {
        *out << ' ' << value << '=' << std::defaultfloat << value << std::hexfloat;
    }
    *out << std::defaultfloat;
}

// --- what is expected -----------------------------------------------------------------------------------------------

/// What a float keeps of a value. Volatile, because g++ 12 loses the rounding of a loop that narrows and widens again.
inline double AsFloat(double value)
{
    const volatile float narrow = static_cast<float>(value);
    return narrow;
}

inline std::vector<double> Flat(std::vector<double> values, const Points& points)
{
    for (const zPoint3d64f& p : points)
    {
        values.insert(values.end(), {AsFloat(p.x), AsFloat(p.y), AsFloat(p.z)});
    }
    return values;
}

inline Drawn Marks(double size, int shape, z32u color, const Points& points)
{
    return {TaPipe::TpGraphicKind::PointSet,
            Flat({size, static_cast<double>(shape), static_cast<double>(color)}, points), ""};
}

struct Style
{
    int mode;
    int ending;
};

inline constexpr Style PLAIN{0, 0};
inline constexpr Style ARROW{0, 1};
inline constexpr Style ARROWS{1, 1};

inline Drawn Line(double width, z32u color, Style style, const Points& points)
{
    return {
        TaPipe::TpGraphicKind::LineSet,
        Flat({width, static_cast<double>(color), static_cast<double>(style.mode), static_cast<double>(style.ending)},
             points),
        ""};
}

inline Drawn Ray(const zPoint3d64f& position, const zPoint3d64f& direction, double width, z32u color)
{
    return {TaPipe::TpGraphicKind::Ray, Flat({width, static_cast<double>(color)}, {position, direction}), ""};
}

inline Drawing InfiniteLine(const zPoint3d64f& position, const zPoint3d64f& d, double width, z32u color)
{
    return {Ray(position, d, width, color), Ray(position, {-d.x, -d.y, -d.z}, width, color)};
}

inline Drawn Other(TaPipe::TpGraphicKind kind, const std::vector<double>& values, const std::string& text = "")
{
    return {kind, values, text};
}

inline Drawing operator+(Drawing a, const Drawing& b)
{
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

// --- what was drawn -------------------------------------------------------------------------------------------------

inline Points WidePoints(const zPoint3d32f* points, std::size_t count)
{
    Points wide;
    for (std::size_t i = 0; i < count; ++i)
    {
        wide.push_back({points[i].x, points[i].y, points[i].z});
    }
    return wide;
}

inline zPoint3d64f Wide(const zPoint3d32f& p)
{
    return {p.x, p.y, p.z};
}

inline Drawn ReadOther(zObject e, TaPipe::TpGraphicKind kind)
{
    const auto plain = [kind](const zPoint3d64f& p, const zPoint3d64f& q, double last) {
        return Drawn{kind, {p.x, p.y, p.z, q.x, q.y, q.z, last}, ""};
    };
    switch (kind)
    {
    case TaPipe::TpGraphicKind::Label: {
        const zPoint3d64f at = TpGraphicLabel_Position(e);
        return {kind, {at.x, at.y, at.z}, TpGraphicLabel_Text(e)};
    }
    case TaPipe::TpGraphicKind::Position: {
        const zPoint3d64f at = TpGraphicPosition_Position(e);
        return {kind, {static_cast<double>(TpGraphicPosition_Type(e)), at.x, at.y, at.z}, ""};
    }
    case TaPipe::TpGraphicKind::Plane: {
        const zPoint3d32f n = TpGraphicPlane_Normal(e);
        return {kind, {n.x, n.y, n.z, TpGraphicPlane_Distance(e)}, ""};
    }
    case TaPipe::TpGraphicKind::Region2d: {
        const zPoint64f c = TpGraphicRegion2d_Center(e);
        const zPoint64f d = TpGraphicRegion2d_Dimensions(e);
        return {kind, {c.x, c.y, d.x, d.y, TpGraphicRegion2d_YAngle(e)}, ""};
    }
    case TaPipe::TpGraphicKind::Region3d:
        return plain(TpGraphicRegion3d_Center(e), TpGraphicRegion3d_Dimensions(e), TpGraphicRegion3d_ZAngle(e));
    default:
        return {kind, {}, ""};
    }
}

inline Drawn Read(zObject e)
{
    switch (const TaPipe::TpGraphicKind kind = TpGraphicElement_Kind(e); kind)
    {
    case TaPipe::TpGraphicKind::PointSet:
        return Marks(TpGraphicPointSet_Size(e), TpGraphicPointSet_PointShape(e), TpGraphicPointSet_Color(e),
                     WidePoints(TpGraphicPointSet_Points(e), TpGraphicPointSet_Count(e)));
    case TaPipe::TpGraphicKind::LineSet:
        return Line(TpGraphicLineSet_Width(e), TpGraphicLineSet_Color(e),
                    {TpGraphicLineSet_LineMode(e), TpGraphicLineSet_LineEnding(e)},
                    WidePoints(TpGraphicLineSet_Points(e), TpGraphicLineSet_Count(e)));
    case TaPipe::TpGraphicKind::Ray:
        return Ray(Wide(TpGraphicRay_Position(e)), Wide(TpGraphicRay_Direction(e)), TpGraphicRay_Width(e),
                   TpGraphicRay_Color(e));
    default:
        return ReadOther(e, kind);
    }
}

inline Ta::Object<void*> NewGraphic()
{
    Ta::Object<void*> graphic;
    MU_CHECK(TpGraphic_Construct(graphic.Out(), nullptr));
    return graphic;
}

inline Drawing DrawingOf(void* graphic)
{
    Drawing drawing;
    for (std::size_t i = 0; i < TpGraphic_Count(graphic); ++i)
    {
        drawing.push_back(Read(TpGraphic_At(graphic, i)));
    }
    return drawing;
}

using Draw = std::function<void(void* graphic)>;

/// What `draw` adds to an empty graphic.
inline Drawing DrawnBy(const Draw& draw)
{
    const Ta::Object<void*> graphic = NewGraphic();
    draw(graphic.Get());
    return DrawingOf(graphic.Get());
}

/// The points of the one line that `draw` adds.
inline Points LineDrawnBy(const Draw& draw)
{
    const Ta::Object<void*> graphic = NewGraphic();
    draw(graphic.Get());
    EXPECT_EQ(TpGraphic_Count(graphic.Get()), 1U);
    void* const line = TpGraphic_At(graphic.Get(), 0);
    return WidePoints(TpGraphicLineSet_Points(line), TpGraphicLineSet_Count(line));
}

/// A call and all that it draws.
struct DrawCase
{
    const char* name;
    Draw draw;
    Drawing expected;
};

inline void ExpectDrawn(const std::vector<DrawCase>& cases)
{
    for (const DrawCase& c : cases)
    {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(DrawnBy(c.draw), c.expected);
    }
}

// --- lists ----------------------------------------------------------------------------------------------------------

template <typename Item>
Ta::Object<void*> ListOfItems(zType type, const std::vector<Item>& items)
{
    Ta::Object<void*> list;
    MU_CHECK(zArrayList_Construct(list.Out(), type, items.size(), nullptr));
    for (const Item& item : items)
    {
        MU_CHECK(zArrayList_Add(list.Get(), &item));
    }
    return list;
}

inline Ta::Object<void*> List64(const std::vector<zPoint3d64f>& points)
{
    return ListOfItems(zTypeOf(zPoint3d64f), points);
}

inline Ta::Object<void*> List32(const std::vector<zPoint3d32f>& points)
{
    return ListOfItems(zTypeOf(zPoint3d32f), points);
}

inline Ta::Object<void*> Records(const std::vector<Mu::TlkHelper::TlkSurfaceGeneralized3dPoint>& points)
{
    return ListOfItems(zBytes_GetType(sizeof(Mu::TlkHelper::TlkSurfaceGeneralized3dPoint)), points);
}

template <typename Item>
std::vector<Item> ItemsOf(const Ta::Object<void*>& list)
{
    const auto* const items = static_cast<const Item*>(zArrayList_Items(list.Get()));
    return {items, items + zArrayList_Count(list.Get())};
}

// --- failures -------------------------------------------------------------------------------------------------------

/// What a call raised; status 1 and empty texts if nothing.
struct Raised
{
    int status = zOK;
    std::string function;
    std::string unit;
    std::string message;

    bool operator==(const Raised&) const = default;
};

inline void PrintTo(const Raised& raised, std::ostream* out)
{
    *out << raised.status << " by " << raised.function << " in " << raised.unit << " '" << raised.message << "'";
}

inline Raised RaisedFrom(const std::function<void()>& call)
{
    try
    {
        call();
    }
    catch (const Ta::Exception& e)
    {
        return {e.Status(), e.Function(), e.File(), e.Message()};
    }
    return {};
}

/// Counts the lines of the low-level log, which it keeps to itself, for the time of a scope.
class CountedLog
{
public:
    CountedLog()
    {
        lines = 0;
        static_cast<void>(zApiLib_SetLogfHandler([](const char* /*format*/, va_list /*arguments*/) {
            ++lines;
            return zOK;
        }));
    }

    CountedLog(const CountedLog&) = delete;
    CountedLog& operator=(const CountedLog&) = delete;

    ~CountedLog()
    {
        static_cast<void>(zApiLib_SetLogfHandler(former));
    }

    [[nodiscard]] static int Lines()
    {
        return lines;
    }

private:
    static inline int lines = 0;
    zLogfHandler former = zApiLib_LogfHandler();
};

/// A failure without text of a function of the unit `GraphicUtils`.
inline Raised RaisedByDrawing(int status, const std::string& function)
{
    return {status, "Mu::TlkHelper::" + function, "Libs/MuTlkHelper/MuTlkHelper/GraphicUtils", ""};
}
} // namespace Support
