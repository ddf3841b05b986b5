#pragma once

#include <TaPipe/TpGraphic.h>
#include <TaPipe/TpGraphicLabel.h>
#include <TaPipe/TpGraphicLineSet.h>
#include <TaPipe/TpGraphicPlane.h>
#include <TaPipe/TpGraphicPointSet.h>
#include <TaPipe/TpGraphicPosition.h>
#include <TaPipe/TpGraphicRay.h>
#include <TaPipe/TpGraphicRegion2d.h>
#include <TaPipe/TpGraphicRegion3d.h>

#include <zApi/zFault.h>

#include <array>
#include <sstream>
#include <string>

// One element of every kind, each property with a value of its own, and a text of all that can be read back.

namespace Support
{
inline constexpr std::array<zPoint3d32f, 2> TWO_POINTS = {{{1, 2, 3}, {4, 5, 6}}};

inline std::ostream& operator<<(std::ostream& out, const zPoint3d32f& p)
{
    return out << '(' << p.x << ", " << p.y << ", " << p.z << ')';
}

inline std::ostream& operator<<(std::ostream& out, const zPoint3d64f& p)
{
    return out << '(' << p.x << ", " << p.y << ", " << p.z << ')';
}

inline std::ostream& operator<<(std::ostream& out, const zPoint64f& p)
{
    return out << '(' << p.x << ", " << p.y << ')';
}

inline void WritePoints(std::ostream& out, const zPoint3d32f* points, std::size_t count)
{
    for (std::size_t i = 0; i < count; ++i)
    {
        out << ' ' << points[i];
    }
}

inline void WritePointSet(std::ostream& out, zObject e)
{
    out << "points " << TpGraphicPointSet_Size(e) << ' ' << TpGraphicPointSet_PointShape(e) << ' '
        << TpGraphicPointSet_Color(e);
    WritePoints(out, TpGraphicPointSet_Points(e), TpGraphicPointSet_Count(e));
}

inline void WriteLineSet(std::ostream& out, zObject e)
{
    out << "lines " << TpGraphicLineSet_Width(e) << ' ' << TpGraphicLineSet_Color(e) << ' '
        << TpGraphicLineSet_LineMode(e) << ' ' << TpGraphicLineSet_LineEnding(e);
    WritePoints(out, TpGraphicLineSet_Points(e), TpGraphicLineSet_Count(e));
}

inline void WriteRay(std::ostream& out, zObject e)
{
    out << "ray " << TpGraphicRay_Position(e) << ' ' << TpGraphicRay_Direction(e) << ' ' << TpGraphicRay_Width(e) << ' '
        << TpGraphicRay_Color(e);
}

inline void WriteLabel(std::ostream& out, zObject e)
{
    out << "label '" << TpGraphicLabel_Text(e) << "' " << TpGraphicLabel_Position(e);
}

inline void WritePlane(std::ostream& out, zObject e)
{
    out << "plane " << TpGraphicPlane_Normal(e) << ' ' << TpGraphicPlane_Distance(e);
}

inline void WriteRegion2d(std::ostream& out, zObject e)
{
    out << "region2d " << TpGraphicRegion2d_Center(e) << ' ' << TpGraphicRegion2d_Dimensions(e) << ' '
        << TpGraphicRegion2d_YAngle(e);
}

inline void WriteRegion3d(std::ostream& out, zObject e)
{
    out << "region3d " << TpGraphicRegion3d_Center(e) << ' ' << TpGraphicRegion3d_Dimensions(e) << ' '
        << TpGraphicRegion3d_ZAngle(e);
}

inline void WritePosition(std::ostream& out, zObject e)
{
    out << "position " << static_cast<int>(TpGraphicPosition_Type(e)) << ' ' << TpGraphicPosition_Position(e);
}

inline zStatus MakePointSet(zObject* e, zAlloc alloc)
{
    return TpGraphicPointSet_Construct(e, 1.5F, 2, 10, TWO_POINTS.data(), TWO_POINTS.size(), alloc);
}

inline zStatus MakeLineSet(zObject* e, zAlloc alloc)
{
    return TpGraphicLineSet_Construct(e, 2.5F, 20, 1, 3, TWO_POINTS.data(), TWO_POINTS.size(), alloc);
}

inline zStatus MakeRay(zObject* e, zAlloc alloc)
{
    zTRY(TpGraphicRay_Construct(e, alloc));
    zTRY(TpGraphicRay_SetDirection(*e, {4, 5, 6}));
    zTRY(TpGraphicRay_SetPosition(*e, {1, 2, 3}));
    zTRY(TpGraphicRay_SetWidth(*e, 3.5F));
    return TpGraphicRay_SetColor(*e, 30);
}

inline zStatus MakeLabel(zObject* e, zAlloc alloc)
{
    zTRY(TpGraphicLabel_Construct(e, alloc));
    zTRY(TpGraphicLabel_SetText(*e, "Höhe"));
    return TpGraphicLabel_SetPosition(*e, {7, 8, 9});
}

inline zStatus MakePlane(zObject* e, zAlloc alloc)
{
    zTRY(TpGraphicPlane_Construct(e, alloc));
    zTRY(TpGraphicPlane_SetNormal(*e, {1, 0, 2}));
    return TpGraphicPlane_SetDistance(*e, 4.5F);
}

inline zStatus MakeRegion2d(zObject* e, zAlloc alloc)
{
    zTRY(TpGraphicRegion2d_Construct(e, alloc));
    zTRY(TpGraphicRegion2d_SetCenter(*e, 1, 2));
    zTRY(TpGraphicRegion2d_SetDimensions(*e, 3, 4));
    return TpGraphicRegion2d_SetYAngle(*e, 0.5);
}

inline zStatus MakeRegion3d(zObject* e, zAlloc alloc)
{
    zTRY(TpGraphicRegion3d_Construct(e, alloc));
    zTRY(TpGraphicRegion3d_SetCenter(*e, 1, 2, 3));
    zTRY(TpGraphicRegion3d_SetDimensions(*e, 4, 5, 6));
    return TpGraphicRegion3d_SetZAngle(*e, 0.25);
}

inline zStatus MakePosition(zObject* e, zAlloc alloc)
{
    zTRY(TpGraphicPosition_Construct(e, alloc));
    zTRY(TpGraphicPosition_SetType(*e, TaPipe::TpGraphicPositionType::Anchor));
    return TpGraphicPosition_SetPosition(*e, {1, 2, 3});
}

/// A kind of element with what the tests do to all of them.
struct GraphicElement
{
    const char* name;
    TaPipe::TpGraphicKind kind;
    zType type;
    zStatus (*make)(zObject* element, zAlloc alloc); ///< an element that a failing setter leaves to the caller
    zStatus (*add)(zObject graphic, zObject element);
    void (*write)(std::ostream& out, zObject element);
    const char* made; ///< what `write` gives of what `make` made
};

inline constexpr std::array<GraphicElement, 8> GRAPHIC_ELEMENTS = {{
    {"point_set", TaPipe::TpGraphicKind::PointSet, zTypeOf(TpGraphicPointSet), MakePointSet, TpGraphic_AddPointSet,
     WritePointSet, "points 1.5 2 10 (1, 2, 3) (4, 5, 6)"},
    {"line_set", TaPipe::TpGraphicKind::LineSet, zTypeOf(TpGraphicLineSet), MakeLineSet, TpGraphic_AddLineSet,
     WriteLineSet, "lines 2.5 20 1 3 (1, 2, 3) (4, 5, 6)"},
    {"ray", TaPipe::TpGraphicKind::Ray, zTypeOf(TpGraphicRay), MakeRay, TpGraphic_AddRay, WriteRay,
     "ray (1, 2, 3) (4, 5, 6) 3.5 30"},
    {"label", TaPipe::TpGraphicKind::Label, zTypeOf(TpGraphicLabel), MakeLabel, TpGraphic_AddLabel, WriteLabel,
     "label 'Höhe' (7, 8, 9)"},
    {"plane", TaPipe::TpGraphicKind::Plane, zTypeOf(TpGraphicPlane), MakePlane, TpGraphic_AddPlane, WritePlane,
     "plane (1, 0, 2) 4.5"},
    {"region_2d", TaPipe::TpGraphicKind::Region2d, zTypeOf(TpGraphicRegion2d), MakeRegion2d, TpGraphic_AddRegion,
     WriteRegion2d, "region2d (1, 2) (3, 4) 0.5"},
    {"region_3d", TaPipe::TpGraphicKind::Region3d, zTypeOf(TpGraphicRegion3d), MakeRegion3d, TpGraphic_AddRegion,
     WriteRegion3d, "region3d (1, 2, 3) (4, 5, 6) 0.25"},
    {"position", TaPipe::TpGraphicKind::Position, zTypeOf(TpGraphicPosition), MakePosition, TpGraphic_AddPosition,
     WritePosition, "position 2 (1, 2, 3)"},
}};

/// All properties of an element as a text; "none" for another handle.
inline std::string TextOf(zObject element)
{
    const TaPipe::TpGraphicKind kind = TpGraphicElement_Kind(element);
    for (const GraphicElement& entry : GRAPHIC_ELEMENTS)
    {
        if (entry.kind == kind)
        {
            std::ostringstream out;
            entry.write(out, element);
            return out.str();
        }
    }
    return "none";
}
} // namespace Support
