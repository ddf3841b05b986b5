#pragma once

#include <MuVision/Regions.h>

#include <zApi/zTypes.h>
#include <zVision/zM3dTransform3d.h>

#include <cstddef>

namespace Mu::Vision
{
/// A rigid transform of points, in mm and degrees.
class MU_PLATFORM_EXPORT RefFrame
{
public:
    /// The identity.
    RefFrame() = default;

    /// A frame of given rows; the caller answers for its being rigid.
    explicit RefFrame(const zM3dTransform3d& entries)
        : rows(entries)
    {
    }

    /// Back to the identity.
    RefFrame& SetIdentity();

    /// True if every entry is exactly that of the identity.
    [[nodiscard]] bool IsIdentity() const;

    // Each rotation acts after what is in the frame already, and is right-handed: about z it goes from x towards y,
    // about y from z towards x. A null angle turns nothing, multiples of 90 turn exactly.

    /// Turns about an axis through the origin; its length does not count. An axis of length 0 turns nothing, one that
    /// is not finite spoils the frame with NaN.
    RefFrame& Rotate(double angle, const Point3d<double>& axis);

    /// The same about an axis through `point`, which keeps its place. A point with a null coordinate turns nothing.
    RefFrame& RotateAroundPoint(const Point3d<double>& point, double angle, const Point3d<double>& axis);

    /// Turns about z by the region's `zAngle` around its centre; if `toAxes`, by minus that, which lays the region in
    /// place along the axes. A region with a null x or y turns nothing.
    RefFrame& Rotate(const Region3d<double>& region, bool toAxes);

    /// Turns about x, then y, then z, each an axis through the origin that stays as it is.
    RefFrame& RotateXYZ(double x, double y, double z);

    /// The transformed point: the products summed from left to right, the translation last.
    [[nodiscard]] zPoint3d64f Apply(zPoint3d64f point) const
    {
        return {rows.xx * point.x + rows.xy * point.y + rows.xz * point.z + rows.xt,
                rows.yx * point.x + rows.yy * point.y + rows.yz * point.z + rows.yt,
                rows.zx * point.x + rows.zy * point.y + rows.zz * point.z + rows.zt};
    }

    [[nodiscard]] Point3d<double> Apply(const Point3d<double>& point) const
    {
        const zPoint3d64f moved = Apply(zPoint3d64f{point.x, point.y, point.z});
        return {moved.x, moved.y, moved.z};
    }

    /// Transforms `count` points; `in` and `out` may be the same array.
    void ApplyN(const zPoint3d64f* in, std::size_t count, zPoint3d64f* out) const
    {
        for (std::size_t i = 0; i < count; ++i)
        {
            out[i] = Apply(in[i]);
        }
    }

    [[nodiscard]] zM3dTransform3d TozTransform() const
    {
        return rows;
    }

private:
    zM3dTransform3d rows{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0};
};
} // namespace Mu::Vision
