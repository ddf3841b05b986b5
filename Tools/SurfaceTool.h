#pragma once

#include <Tools/RegionTool.h>

#include <MuTlkHelper/AnchoredRegion.h>
#include <MuTlkHelper/InputUtils.h>

/// What sample tools on surfaces have in common: the surface, and the points in a region of it that follows an anchor.
class SurfaceTool : public RegionTool<Mu::TlkHelper::AnchoredSurfaceRegion, zPoint3d64f>
{
protected:
    static constexpr const char* SURFACE = "Surface";

    void AddInputs()
    {
        AddInput(SURFACE, AT_END)
            .AddAcceptedDataFormat(PipeDataType::UniformSurface, false)
            .AddAcceptedDataFormat(PipeDataType::PointSurface, false);
        AddAnchorInputs(Mu::TlkHelper::AnchorType::Surface, true);
    }

    /// The points inside the region, in mm, row by row, until the next call.
    [[nodiscard]] std::span<const zPoint3d64f> PointsInRegion(void* surface)
    {
        return PointsBy([this, surface](void** list) {
            Mu::TlkHelper::GetPointsFromRegion(surface, AbsoluteRegion(), list, toolAlloc);
        });
    }
};
