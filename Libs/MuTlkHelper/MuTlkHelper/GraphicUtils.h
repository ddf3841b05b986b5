#pragma once

#include <MuTlkHelper/Export.h>

#include <MuVision/Features.h>
#include <MuVision/Regions.h>
#include <MuVision/Sectors.h>
#include <TaApi/Object.h>
#include <TaPipe/TpGraphicPosition.h>
#include <zApi/zTypes.h>
#include <zVision/zM3dTransform2d.h>
#include <zVision/zM3dTransform3d.h>

#include <array>

// What a tool draws: each call adds finished elements to a display list (`TpGraphic`), in one house style.
//
// For all of them: lengths are in mm, angles in degrees, colours 0xAARRGGBB, widths and sizes in screen pixels. Points
// are narrowed to floats. Elements are made in `alloc`; null is the default allocator. Nothing to draw is no error: the
// graphic lacks the element then. A failing call of the host or the base library is raised as Ta::Exception with its
// status, under the name of the function that made the call; the elements that were added before stay. The order of
// `width` and `color` differs between the functions and is part of the interface.

namespace Mu::TlkHelper
{
inline constexpr z32u DecorationColor = 0xFFFFFF00U;   ///< measurement decorations and arrows: yellow
inline constexpr z32u FoundFeatureColor = 0xFF00FFFFU; ///< what a tool found: cyan

// The plane of a curve: the number of the axis that it turns about.
inline constexpr int PLANE_YZ = 4;
inline constexpr int PLANE_XZ = 5;
inline constexpr int PLANE_XY = 6;

// What was measured.
inline constexpr int AXIS_DIRECT = 0;
inline constexpr int AXIS_X = 1;
inline constexpr int AXIS_Y = 2;
inline constexpr int AXIS_Z = 3;
inline constexpr int AXIS_Y_ANGLE = 5;
inline constexpr int AXIS_Z_ANGLE = 6;

/// Sets red, green and blue of `*rgb`; its fourth byte stays, and the colour's alpha does not count.
MU_TLK_EXPORT void ColorToRgb(z32u color, zRgb* rgb);

// --- points, lines, rays, labels ------------------------------------------------------------------------------------

/// Marks a point, unless a coordinate is null.
MU_TLK_EXPORT void GraphicAddPoint(void* graphic, const zPoint3d64f& point, float size, z32u color, void* alloc,
                                   int pointShape);

/// Marks the points of a `zArrayList`, as one element. Points of type `zPoint3d64f` are thinned to less than 20,000 and
/// left out if null; points of type `zPoint3d32f` are taken as they are. A null list, an empty one of `zPoint3d64f` and
/// one of another type draw nothing.
MU_TLK_EXPORT void GraphicAddPoints(void* graphic, void* list, float size, z32u color, void* alloc, int pointShape);

/// A line through the points of a `zArrayList`, in their order. Points as in `GraphicAddPoints`, and of type
/// `TlkSurfaceGeneralized3dPoint` too. A null list draws nothing; one that gives no points gives a line without points,
/// and where it is empty and of `zPoint3d64f` or of another type, the low-level log tells of a failed cast.
MU_TLK_EXPORT void GraphicAddLines(void* graphic, void* list, float width, z32u color, void* alloc);

/// A ray. Nulls are passed on as they are.
MU_TLK_EXPORT void GraphicAddRay(void* graphic, const zPoint3d64f& position, const zPoint3d64f& direction, float width,
                                 z32u color, void* alloc);

/// A text, which is copied. A null `position` draws nothing.
MU_TLK_EXPORT void GraphicAddLabel(void* graphic, const char* text, zPoint3d32f* position, void* alloc);

/// A marked place. Nulls are passed on as they are.
MU_TLK_EXPORT void GraphicAddPosition(void* graphic, const zPoint3d64f& point, TaPipe::TpGraphicPositionType type,
                                      void* alloc);

/// An arrow in `DecorationColor`, width 2. Nulls are passed on as they are.
MU_TLK_EXPORT void GraphicAddArrow(void* graphic, const zPoint3d64f& from, const zPoint3d64f& to, void* alloc);

/// `GraphicAddPoints` as dots of size 1 in `FoundFeatureColor`.
MU_TLK_EXPORT void GraphicAddFoundPoints(void* graphic, void* list, void* alloc);

/// `GraphicAddLines` of width 1 in `FoundFeatureColor`.
MU_TLK_EXPORT void GraphicAddContourLines(void* graphic, void* list, void* alloc);

/// The infinite line through two points, width 1 in `FoundFeatureColor`; for points of a profile, (x, z), at y = 0.
MU_TLK_EXPORT void GraphicAddFittedLine(void* graphic, const zPoint3d64f& p1, const zPoint3d64f& p2, void* alloc);
MU_TLK_EXPORT void GraphicAddFittedLine(void* graphic, const zPoint64f& p1, const zPoint64f& p2, void* alloc);

// --- lines ----------------------------------------------------------------------------------------------------------

/// The ends of a line of this length around `center`, in the XY plane: `*first` lies against the angle, `*second`
/// along.
MU_TLK_EXPORT void GetLineEndPoints(const zPoint3d64f& center, double angle, double length, zPoint3d64f* first,
                                    zPoint3d64f* second);

/// An infinite line: two rays from `point`, along `direction` and against it. Nulls are passed on as they are.
MU_TLK_EXPORT void GraphicAddInfiniteLine(void* graphic, const zPoint3d32f& point, const zPoint3d32f& direction,
                                          z32u color, float width, void* alloc);

/// The same, unless a coordinate is null.
MU_TLK_EXPORT void GraphicAddInfiniteLine(void* graphic, const zPoint3d64f& point, const zPoint3d64f& direction,
                                          z32u color, float width, void* alloc);

/// The same, unless a coordinate is null or the direction has no length.
/// @throws Ta::Exception -997 if a component of the direction is not finite
MU_TLK_EXPORT void GraphicAddInfiniteLine(void* graphic, const Mu::Vision::Line3d<double>& line, z32u color,
                                          float width, void* alloc);
MU_TLK_EXPORT void GraphicAddInfiniteLine(void* graphic, const zLine3d64f& line, z32u color, float width, void* alloc);

/// A line of two points. Nulls are passed on as they are.
MU_TLK_EXPORT void GraphicAddLineSegment(void* graphic, const zPoint3d64f& a, const zPoint3d64f& b, float width,
                                         z32u color, void* alloc);
MU_TLK_EXPORT void GraphicAddLineSegment(void* graphic, const std::array<zPoint3d32f, 2>& ends, float width, z32u color,
                                         void* alloc);

/// A line between points of a profile, (x, z), at y = 0, unless a value is null.
MU_TLK_EXPORT void GraphicAddProfileLineSegment(void* graphic, const zPoint64f& a, const zPoint64f& b, float width,
                                                z32u color, void* alloc);

/// The infinite line y = slope x + intercept at height `z`, unless a value is null.
MU_TLK_EXPORT void GraphicAddLineBySlopeIntercept(void* graphic, double slope, double intercept, double z, float width,
                                                  z32u color, void* alloc);

/// The infinite line z = slope x + intercept at y = 0, unless a value is null.
MU_TLK_EXPORT void GraphicAddXZLineBySlopeIntercept(void* graphic, double slope, double intercept, float width,
                                                    z32u color, void* alloc);

/// The infinite line through a point of a profile, (x, z), at y = 0. Its width is always 1: `width` is not used.
MU_TLK_EXPORT void GraphicAddXZLineByPointAngle(void* graphic, const zPoint64f& point, double angle, float width,
                                                z32u color, void* alloc);

// Lines cut at a box. Here `x`, `y`, `z` of the region are its lowest corner, not its centre; its angles do not count.
// A null point, or a line that misses the box, draws nothing.

/// The line through `point` in the XY plane at the point's height, cut at the box, whose edges belong to it.
MU_TLK_EXPORT void GraphicAddBoundedLineXY(void* graphic, float width, z32u color, const zPoint3d64f& point,
                                           double angle, const Mu::Vision::Region3d<double>& region, void* alloc);

/// The same in the XZ plane at the point's y.
MU_TLK_EXPORT void GraphicAddBoundedLineXZ(void* graphic, float width, z32u color, const zPoint3d64f& point,
                                           double angle, const Mu::Vision::Region3d<double>& region, void* alloc);

/// The line through `point` along `direction` between the two faces of the box across the first axis, of x, y, z, that
/// it runs along. It is not cut at the other faces. The end along the direction comes first.
MU_TLK_EXPORT void GraphicAddBoundedLineXYZ(void* graphic, float width, z32u color, const zPoint3d64f& point,
                                            const zPoint3d64f& direction, const Mu::Vision::Region3d<double>& region,
                                            void* alloc);

// --- curves ---------------------------------------------------------------------------------------------------------

// Curves are lines through points `step` degrees apart. A `step` that gives more than 2^26 points, 0 among them, is
// refused by the base library (-997). A `plane` other than 4, 5, 6 gives points at the origin.

/// A circle in a main plane. A step that does not divide 360 leaves it open.
MU_TLK_EXPORT void GraphicAddCircle(void* graphic, const zPoint3d64f& center, double radius, double step, float width,
                                    z32u color, void* alloc, int plane);

/// A circle of the XY plane, turned about x, minus y and z around its centre by the angles of `rotation`.
MU_TLK_EXPORT void GraphicAddCircle(void* graphic, const zPoint3d64f& center, double radius,
                                    const zPoint3d64f& rotation, double step, float width, z32u color, void* alloc);

/// An arc with arrows at both ends, in steps of 1 degree; its last point is at `start + sweep` exactly. A sweep of
/// nearly 0, and an angle that is null or not finite, draw nothing.
MU_TLK_EXPORT void GraphicAddArc(void* graphic, const zPoint3d64f& center, double radius, double start, double sweep,
                                 int plane, z32u color, float width, void* alloc);

/// An arc around `center` from the direction `from` to the direction `to`, with arrows at both ends, about one point a
/// degree. If they are more than 90 degrees apart, it begins against `from`. A null centre draws nothing.
/// @throws Ta::Exception -997 if a component of a direction is not finite
MU_TLK_EXPORT void GraphicAddArcXYZ(void* graphic, float width, z32u color, const zPoint3d64f& center,
                                    const zPoint3d64f& from, const zPoint3d64f& to, double radius, void* alloc);

/// An ellipse turned by `rotation`, with arrows where it does not close. Its full axes are `size.y` along the plane's
/// first axis and `size.x` along the second.
MU_TLK_EXPORT void GraphicAddEllipse(void* graphic, const zPoint3d64f& center, const zPoint3d64f& size, double rotation,
                                     double step, int plane, z32u color, float width, void* alloc);

/// The closed outline of a sector of a ring, in the XY plane of its centre; its angles count in whole steps.
MU_TLK_EXPORT void GraphicAddAnnularSector(void* graphic, const Mu::Vision::AnnularSector3d<double>& sector,
                                           double step, float width, z32u color, void* alloc);

/// The points of an arc of an ellipse with the half axes `a` and `b`, turned by `rotation` around its centre: a new
/// list of `zPoint3d32f` in `alloc`. A sweep that is not above 0 goes backwards.
[[nodiscard]] MU_TLK_EXPORT Ta::Object<void*> CreateEllipseArc(const zPoint3d64f& center, double a, double b,
                                                               double start, double sweep, double rotation, double step,
                                                               void* alloc, int plane);

/// The two points at `angle` on the ellipses (`a1`, `b1`) and (`a2`, `b2`): the straight edge of a sector between them.
[[nodiscard]] MU_TLK_EXPORT Ta::Object<void*> CreateEllipseSectorEdgeLine(const zPoint3d64f& center, double a1,
                                                                          double b1, double a2, double b2,
                                                                          double rotation, double angle, void* alloc,
                                                                          int plane);

// --- regions, boxes, planes -----------------------------------------------------------------------------------------

// Regions as the host shows regions. They are not tested for being valid; a null angle counts as 0.

MU_TLK_EXPORT void GraphicAddProfileRegion(void* graphic, const Mu::Vision::RegionXZ<double>& region, void* alloc);

/// Only the angle about z is shown.
MU_TLK_EXPORT void GraphicAddSurfaceRegion(void* graphic, const Mu::Vision::Region3d<double>& region, void* alloc);

/// The outline of a region in `FoundFeatureColor`, each corner moved by `transform`; the region's angle does not count.
MU_TLK_EXPORT void GraphicAddTransformedRegionXZ(void* graphic, const Mu::Vision::RegionXZ<double>& region,
                                                 const zM3dTransform2d& transform, void* alloc);

// Wire-frames of width 2. A region that is not valid (a null centre, an extent not above 0) draws nothing.
// @throws Ta::Exception -997 if `graphic` is null

/// All twelve edges of a box, turned about z by its `zAngle` minus 90.
MU_TLK_EXPORT void GraphicAddBBox(void* graphic, z32u color, const Mu::Vision::Region3d<double>& region, void* alloc);

/// A rectangle at height `z`, turned by its `angle` minus 90. A null `z` draws nothing.
MU_TLK_EXPORT void GraphicAddXYBBox(void* graphic, z32u color, const Mu::Vision::Region2d<double>& region, double z,
                                    void* alloc);

/// A rectangle of a profile at y = 0, turned by its `angle`.
MU_TLK_EXPORT void GraphicAddXZBBox(void* graphic, z32u color, const Mu::Vision::RegionXZ<double>& region, void* alloc);

/// A rectangle turned by its `angle` minus 90 at z = 0, then about x, minus y and z by the angles of `rotation`, then
/// moved by `offset`. A region that is not valid draws nothing.
MU_TLK_EXPORT void GraphicAddRect(void* graphic, const Mu::Vision::Region2d<double>& region,
                                  const zPoint3d64f& rotation, const zPoint3d64f& offset, float width, z32u color,
                                  void* alloc);

/// A plane, unless a value is null. @throws Ta::Exception -997 if `graphic` is null
MU_TLK_EXPORT void GraphicAddPlane(void* graphic, const zPlane3d64f& plane, void* alloc);

/// The same, unless the normal has no length. @throws also -997 if a component of the normal is not finite
MU_TLK_EXPORT void GraphicAddPlane(void* graphic, const Mu::Vision::PlaneParams<double>& plane, void* alloc);

/// The wire-frame of a box, without its angles, each corner moved by `transform`: a new list of 16 `zPoint3d64f` in
/// `*list`, which the caller owns. The list is empty if a value of the transform is null.
MU_TLK_EXPORT void GetRegionContour(const Mu::Vision::Region3d<double>& region, const zM3dTransform3d& transform,
                                    void** list);

// --- measurement decorations ----------------------------------------------------------------------------------------

// All in `DecorationColor`. An `axis` that a function does not know draws nothing.

/// What was measured at `point` along x (1), y (2), z (3), or as an angle about z (6).
MU_TLK_EXPORT void GraphicAddMeasurementLines(void* graphic, int axis, const zPoint3d64f& point, double angle,
                                              void* alloc);

/// The same at a point of a profile, (x, z), along x (1), z (3), or as an angle about y (5); the line of an axis spans
/// three times the box `bounds` to either side, and is left out if that is not known.
MU_TLK_EXPORT void GraphicAddProfileMeasurementLines(void* graphic, int axis, const zPoint64f& point, double angle,
                                                     const zRect3d64f& bounds, void* alloc);

/// The distance from `a` to `b`: direct (0) or along x (1), y (2), z (3).
MU_TLK_EXPORT void GraphicAddDistanceLines(void* graphic, int axis, const zPoint3d64f& a, const zPoint3d64f& b,
                                           void* alloc);

/// The same between points of a profile, (x, z): direct (0) or along x (1), z (3).
MU_TLK_EXPORT void GraphicAddProfileDistanceLines(void* graphic, int axis, const zPoint64f& a, const zPoint64f& b,
                                                  void* alloc);

// Angles: two arms, a dot at the vertex, and an arc. The arms are cut at the tool's region, grown to hold the vertex
// and a margin. A null vertex or direction draws nothing.

/// The angle between two directions.
MU_TLK_EXPORT void GraphicAddAngleMeasurementLines(void* graphic, const zPoint3d64f& vertex, const zPoint3d64f& from,
                                                   const zPoint3d64f& to, const Mu::Vision::Region3d<double>& region,
                                                   void* alloc);

/// An angle in the XY plane.
MU_TLK_EXPORT void GraphicAddZAngleMeasurementLines(void* graphic, const zPoint3d64f& vertex, double start,
                                                    double sweep, const Mu::Vision::Region3d<double>& region,
                                                    void* alloc);

/// An angle in the XZ plane.
MU_TLK_EXPORT void GraphicAddYAngleMeasurementLines(void* graphic, const zPoint3d64f& vertex, double start,
                                                    double sweep, const Mu::Vision::Region3d<double>& region,
                                                    void* alloc);

/// An angle in the XY plane if `useZ` is not 0, else in the XZ plane.
MU_TLK_EXPORT void GraphicAddProjectedAngleMeasurementLines(void* graphic, const zPoint3d64f& vertex, double start,
                                                            double sweep, int useZ,
                                                            const Mu::Vision::Region3d<double>& region, void* alloc);
} // namespace Mu::TlkHelper
