#pragma once

#include <TaApi/ParamsGroup.h>
#include <TaApi/ParamsValue.h>

#include <string>
#include <vector>

namespace Ta::Params
{
/// A box as nine values: its centre, its full extents, and its angles. All nine are always there and may be read; which
/// of them the user has is said by what is registered.
class MU_PLATFORM_EXPORT BaseBoxRegion : public Group
{
public:
    explicit BaseBoxRegion(const std::string& name);
    ~BaseBoxRegion() override;

    Value<double> x;
    Value<double> y;
    Value<double> z;
    Value<double> width;
    Value<double> length;
    Value<double> height;
    Value<double> xAngle;
    Value<double> yAngle;
    Value<double> zAngle;
};

/// A box of which the user has some axes. A value of an axis that does not exist is not registered and says that it is
/// not "used".
class MU_PLATFORM_EXPORT BoxRegion : public BaseBoxRegion
{
public:
    /// The first six say which axes exist, the others which of them carry units: "mm", and "deg" for angles.
    BoxRegion(bool hasX, bool hasY, bool hasZ, bool hasXAngle, bool hasYAngle, bool hasZAngle, bool hasXUnits,
              bool hasYUnits, bool hasZUnits, bool hasXAngleUnits, bool hasYAngleUnits, bool hasZAngleUnits,
              const std::string& name);
    ~BoxRegion() override;
};

/// A region in the plane of a profile: x, z, `width`, `height`, and `yAngle`.
class MU_PLATFORM_EXPORT ProfileRegion : public BoxRegion
{
public:
    ProfileRegion();
    ~ProfileRegion() override;
};

/// A region of a surface seen from above: x, y, `width`, `length`, and `zAngle`.
class MU_PLATFORM_EXPORT SurfaceRegion2d : public BoxRegion
{
public:
    SurfaceRegion2d();
    ~SurfaceRegion2d() override;
};

/// A region of a surface: centre, extents, and `zAngle`.
class MU_PLATFORM_EXPORT SurfaceRegion3d : public BoxRegion
{
public:
    SurfaceRegion3d();
    ~SurfaceRegion3d() override;
};

/// A transform of space for others to read: the sixteen values of a 4 by 4 matrix, row after row, or none where it is
/// not known. It begins as the identity.
class MU_PLATFORM_EXPORT Transform3d : public Value<std::vector<double>>
{
public:
    Transform3d();
    ~Transform3d() override;
};

/// A box with the transform that moved it.
class MU_PLATFORM_EXPORT TransformedBoxRegion : public BoxRegion
{
public:
    /// As `BoxRegion`.
    TransformedBoxRegion(bool hasX, bool hasY, bool hasZ, bool hasXAngle, bool hasYAngle, bool hasZAngle,
                         bool hasXUnits, bool hasYUnits, bool hasZUnits, bool hasXAngleUnits, bool hasYAngleUnits,
                         bool hasZAngleUnits);
    ~TransformedBoxRegion() override;

    Transform3d transformMatrix;
};
} // namespace Ta::Params
