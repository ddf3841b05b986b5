#pragma once

#include <MuTlkHelper/Export.h>

#include <MuVision/Anchor.h>
#include <MuVision/Masks.h>
#include <MuVision/Regions.h>
#include <TaApi/ParamsRegions.h>

namespace Mu::TlkHelper
{
/// What the tool does with all its regions in step, so that they follow an anchor. A region keeps three things apart:
/// its parameters, the region as configured, relative to the anchor, and the absolute region in the frame of the data,
/// which is measured in.
///
/// The order of the virtual operations is part of the interface. Nothing here is guarded.
class MU_TLK_EXPORT AnchoredRegionInterface
{
public:
    AnchoredRegionInterface() = default;
    AnchoredRegionInterface(const AnchoredRegionInterface&) = delete;
    AnchoredRegionInterface& operator=(const AnchoredRegionInterface&) = delete;

    /// Takes the parameters over as relative and as absolute region.
    virtual void SynchronizeRegion() = 0;

    /// Takes the parameters over as relative region.
    virtual void RefreshRelativeRegion() = 0;

    /// Writes the relative region back into those parameters that are in use.
    virtual void RefreshConfigRegion() = 0;

    /// Keeps the frame of `anchor`, for `RefreshConfigTransformMatrix`.
    virtual void CalculateTransformMatrix(const Mu::Vision::Anchor& anchor) = 0;

    /// Moves the relative region by `anchor`, to the absolute one.
    virtual void CalculateAbsoluteRegion(const Mu::Vision::Anchor& anchor) = 0;

    /// Takes the absolute region back through `anchor`, to the relative one.
    virtual void CalculateRelativeRegion(const Mu::Vision::Anchor& anchor) = 0;

    /// Sets the published transform and the frame to the identity.
    virtual void ResetTransformMatrix() = 0;

    /// Empties the published transform: it is not known until the run ends.
    virtual void SetTransformMatrixAsInvalid() = 0;

    /// Publishes the frame.
    virtual void RefreshConfigTransformMatrix() = 0;

    /// Whether the published transform is the identity, to less than DBL_EPSILON in each entry; an empty one is.
    virtual bool IsTransformMatrixIdentity() = 0;

    virtual bool IsRegionUsed() = 0;
    virtual void SetRegionUsed(bool used) = 0;

    /// The region's shape.
    virtual Mu::Vision::MaskType GetRegionType() = 0;

    virtual ~AnchoredRegionInterface();
};

/// A box that follows an anchor, as parameters and as regions. A new one is a cube of 5 at the origin.
class MU_TLK_EXPORT AnchoredBoxRegion : public Ta::Params::TransformedBoxRegion, public AnchoredRegionInterface
{
public:
    /// The first six say which axes the user has, the others which of them carry units.
    AnchoredBoxRegion(bool hasX, bool hasY, bool hasZ, bool hasXAngle, bool hasYAngle, bool hasZAngle, bool hasXUnits,
                      bool hasYUnits, bool hasZUnits, bool hasXAngleUnits, bool hasYAngleUnits, bool hasZAngleUnits);

    void SynchronizeRegion() override;

    void RefreshRelativeRegion() override;

    /// @throws Ta::Exception -997 if a value is outside the limits of its parameter; those before it are written then
    void RefreshConfigRegion() override;

    void CalculateTransformMatrix(const Mu::Vision::Anchor& anchor) override;
    void CalculateAbsoluteRegion(const Mu::Vision::Anchor& anchor) override;
    void CalculateRelativeRegion(const Mu::Vision::Anchor& anchor) override;
    void ResetTransformMatrix() override;
    void SetTransformMatrixAsInvalid() override;
    void RefreshConfigTransformMatrix() override;

    /// A matrix of one to eleven entries is none, and not the identity.
    bool IsTransformMatrixIdentity() override;

    bool IsRegionUsed() override;
    void SetRegionUsed(bool used) override;
    Mu::Vision::MaskType GetRegionType() override;
    ~AnchoredBoxRegion() override;

    Mu::Vision::Region3d<double> relativeRegion; ///< as configured: before the anchor
    Mu::Vision::Region3d<double> absoluteRegion; ///< after the anchor
    Mu::Vision::RefFrame anchorFrame;            ///< the transform of the anchor
    Mu::Vision::MaskType regionType = Mu::Vision::MaskType::Rectangle;
};

/// A box in the plane of a profile: x, z, `width`, `height`, in mm.
class MU_TLK_EXPORT AnchoredProfileRegion : public AnchoredBoxRegion
{
public:
    /// @param hasAngle  the user has the angle about y
    explicit AnchoredProfileRegion(bool hasAngle);
    ~AnchoredProfileRegion() override;

    /// The absolute region in the plane of the profile.
    [[nodiscard]] Mu::Vision::RegionXZ<double> AbsoluteRegion() const;
};

/// A box on a surface: centre and extents in mm.
class MU_TLK_EXPORT AnchoredSurfaceRegion : public AnchoredBoxRegion
{
public:
    /// @param hasAngle  the user has the angle about z
    explicit AnchoredSurfaceRegion(bool hasAngle);
    ~AnchoredSurfaceRegion() override;

    [[nodiscard]] Mu::Vision::Region3d<double> AbsoluteRegion() const;
};

/// A box on an image: x, y, `width`, `length`, in pixels.
class MU_TLK_EXPORT AnchoredImageRegion : public AnchoredBoxRegion
{
public:
    /// @param hasAngle  the user has the angle about z
    explicit AnchoredImageRegion(bool hasAngle);
    ~AnchoredImageRegion() override;

    [[nodiscard]] Mu::Vision::Region2d<double> AbsoluteRegion() const;
};
} // namespace Mu::TlkHelper
