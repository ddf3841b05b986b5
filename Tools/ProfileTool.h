#pragma once

#include <Tools/RegionTool.h>

#include <MuTlkHelper/AnchoredRegion.h>
#include <MuTlkHelper/InputUtils.h>

/// What sample tools on profiles have in common: the profile, and its points, in a region that follows an anchor or
/// all of them.
class ProfileTool : public RegionTool<Mu::TlkHelper::AnchoredProfileRegion, zPoint64f>
{
protected:
    static constexpr const char* PROFILE = "Profile";

    void AddInputs()
    {
        AddInput(PROFILE, AT_END)
            .AddAcceptedDataFormat(PipeDataType::UniformProfile, false)
            .AddAcceptedDataFormat(PipeDataType::PointProfile, false);
        AddAnchorInputs(Mu::TlkHelper::AnchorType::Profile, true);
    }

    /// The points (x, z) of the profile, in mm and in its order, until the next call: those inside the region if it is
    /// used, else all.
    [[nodiscard]] std::span<const zPoint64f> MeasuredPoints(void* profile)
    {
        return PointsBy([this, profile](void** list) { AddPoints(profile, list); });
    }

private:
    void AddPoints(void* profile, void** list) const
    {
        if (!UsesRegion())
        {
            Mu::TlkHelper::GetAllProfilePoints(profile, list, toolAlloc);
            return;
        }
        Mu::Vision::RegionXZ<double> box = AbsoluteRegion();
        if (box.angle == 0)
        {
            // It counts points in more than 16 bits, and does not look at those outside.
            Mu::TlkHelper::GetPointsFromRegionXZ(profile, box, list, toolAlloc);
            return;
        }
        Mu::TlkHelper::GetProfilePointsFromRegionsWithAngle(profile, &box, &box.angle, 1, list, toolAlloc);
    }
};
