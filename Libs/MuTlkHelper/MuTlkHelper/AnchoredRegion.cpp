#include <MuTlkHelper/AnchoredRegion.h>

#include <array>
#include <cfloat>
#include <cmath>
#include <cstddef>
#include <vector>

namespace Mu::TlkHelper
{
namespace
{
using Mu::Vision::Anchor;
using Mu::Vision::MaskType;
using Mu::Vision::Region3d;
using Mu::Vision::RotationOrder;

constexpr double FIRST_EXTENT = 5.0;

// The columns of the published matrix's rows that count; the last row never does.
constexpr std::size_t TRANSFORM_ENTRIES = 12;
constexpr std::size_t DIAGONAL_STEP = 5;

struct FieldOfParameter
{
    Ta::Params::Value<double> Ta::Params::BaseBoxRegion::*parameter;
    double Region3d<double>::*field;
};

using Box = Ta::Params::BaseBoxRegion;
using Region = Region3d<double>;

constexpr std::array<FieldOfParameter, 9> FIELDS = {{
    {&Box::x, &Region::x},
    {&Box::y, &Region::y},
    {&Box::z, &Region::z},
    {&Box::width, &Region::width},
    {&Box::length, &Region::length},
    {&Box::height, &Region::height},
    {&Box::xAngle, &Region::xAngle},
    {&Box::yAngle, &Region::yAngle},
    {&Box::zAngle, &Region::zAngle},
}};

Region Configured(const Box& parameters)
{
    Region region;
    for (const auto& [parameter, field] : FIELDS)
    {
        region.*field = (parameters.*parameter).Get();
    }
    return region;
}

// The published matrix: the twelve entries of a frame in rows of four, then the row that every rigid transform has.
std::vector<double> Published(const Mu::Vision::RefFrame& frame)
{
    const zM3dTransform3d t = frame.TozTransform();
    return {t.xx, t.xy, t.xz, t.xt, t.yx, t.yy, t.yz, t.yt, t.zx, t.zy, t.zz, t.zt, 0.0, 0.0, 0.0, 1.0};
}
} // namespace

AnchoredRegionInterface::~AnchoredRegionInterface() = default;

AnchoredBoxRegion::AnchoredBoxRegion(bool hasX, bool hasY, bool hasZ, bool hasXAngle, bool hasYAngle, bool hasZAngle,
                                     bool hasXUnits, bool hasYUnits, bool hasZUnits, bool hasXAngleUnits,
                                     bool hasYAngleUnits, bool hasZAngleUnits)
    : TransformedBoxRegion(hasX, hasY, hasZ, hasXAngle, hasYAngle, hasZAngle, hasXUnits, hasYUnits, hasZUnits,
                           hasXAngleUnits, hasYAngleUnits, hasZAngleUnits)
{
    width.Set(FIRST_EXTENT);
    length.Set(FIRST_EXTENT);
    height.Set(FIRST_EXTENT);
    relativeRegion = Configured(*this);
    absoluteRegion = relativeRegion;
}

AnchoredBoxRegion::~AnchoredBoxRegion() = default;

void AnchoredBoxRegion::SynchronizeRegion()
{
    RefreshRelativeRegion();
    absoluteRegion = relativeRegion;
}

void AnchoredBoxRegion::RefreshRelativeRegion()
{
    relativeRegion = Configured(*this);
}

void AnchoredBoxRegion::RefreshConfigRegion()
{
    for (const auto& [parameter, field] : FIELDS)
    {
        Ta::Params::Value<double>& value = this->*parameter;
        if (value.GetUsed())
        {
            value.Set(relativeRegion.*field);
        }
    }
}

void AnchoredBoxRegion::CalculateTransformMatrix(const Anchor& anchor)
{
    anchorFrame = Mu::Vision::CreateAnchorTransform(anchor, RotationOrder::XYZ);
}

void AnchoredBoxRegion::CalculateAbsoluteRegion(const Anchor& anchor)
{
    Mu::Vision::AnchorRegion(anchor, RotationOrder::XYZ, relativeRegion, &absoluteRegion);
}

void AnchoredBoxRegion::CalculateRelativeRegion(const Anchor& anchor)
{
    Mu::Vision::AnchorRegionInv(anchor, RotationOrder::XYZ, absoluteRegion, &relativeRegion);
}

// The matrix is read-only for its users; its owner writes it without the log line that they would get.
void AnchoredBoxRegion::ResetTransformMatrix()
{
    anchorFrame = Mu::Vision::RefFrame();
    transformMatrix.SetUnchecked(Published(anchorFrame));
}

void AnchoredBoxRegion::SetTransformMatrixAsInvalid()
{
    transformMatrix.SetUnchecked({});
}

void AnchoredBoxRegion::RefreshConfigTransformMatrix()
{
    transformMatrix.SetUnchecked(Published(anchorFrame));
}

bool AnchoredBoxRegion::IsTransformMatrixIdentity()
{
    const std::vector<double>& entries = transformMatrix.Get();
    if (entries.size() < TRANSFORM_ENTRIES)
    {
        return entries.empty();
    }
    for (std::size_t i = 0; i < TRANSFORM_ENTRIES; ++i)
    {
        const double ideal = i % DIAGONAL_STEP == 0 ? 1.0 : 0.0;
        // Negated for a NaN.
        if (!(std::abs(entries[i] - ideal) < DBL_EPSILON))
        {
            return false;
        }
    }
    return true;
}

bool AnchoredBoxRegion::IsRegionUsed()
{
    return GetUsed();
}

void AnchoredBoxRegion::SetRegionUsed(bool used)
{
    SetUsed(used);
}

MaskType AnchoredBoxRegion::GetRegionType()
{
    return regionType;
}

AnchoredProfileRegion::AnchoredProfileRegion(bool hasAngle)
    : AnchoredBoxRegion(true, false, true, false, hasAngle, false, true, true, true, true, true, true)
{
}

AnchoredProfileRegion::~AnchoredProfileRegion() = default;

Mu::Vision::RegionXZ<double> AnchoredProfileRegion::AbsoluteRegion() const
{
    return {absoluteRegion.x, absoluteRegion.z, absoluteRegion.width, absoluteRegion.height, absoluteRegion.yAngle};
}

AnchoredSurfaceRegion::AnchoredSurfaceRegion(bool hasAngle)
    : AnchoredBoxRegion(true, true, true, false, false, hasAngle, true, true, true, true, true, true)
{
}

AnchoredSurfaceRegion::~AnchoredSurfaceRegion() = default;

Region AnchoredSurfaceRegion::AbsoluteRegion() const
{
    return absoluteRegion;
}

AnchoredImageRegion::AnchoredImageRegion(bool hasAngle)
    : AnchoredBoxRegion(true, true, false, false, false, hasAngle, true, true, true, true, true, true)
{
    for (Ta::Params::Value<double>* const value : {&x, &y, &width, &length})
    {
        value->EnableUnits("px");
    }
}

AnchoredImageRegion::~AnchoredImageRegion() = default;

Mu::Vision::Region2d<double> AnchoredImageRegion::AbsoluteRegion() const
{
    return {absoluteRegion.x, absoluteRegion.y, absoluteRegion.width, absoluteRegion.length, absoluteRegion.zAngle};
}
} // namespace Mu::TlkHelper
