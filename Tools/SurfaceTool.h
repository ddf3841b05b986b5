#pragma once

#include <MuTlkHelper/AnchoredRegion.h>
#include <MuTlkHelper/CommonTool.h>
#include <MuTlkHelper/InputUtils.h>

#include <TaApi/Object.h>
#include <zApi/zArrayList.h>

#include <span>

/// What sample tools on surfaces have in common: the surface, a region of it that follows an anchor, and measurements.
class SurfaceTool : public Mu::Tools::CommonTool
{
protected:
    static constexpr std::size_t AT_END = static_cast<std::size_t>(-1);
    static constexpr const char* SURFACE = "Surface";

    void AddInputs()
    {
        AddInput(SURFACE, AT_END)
            .AddAcceptedDataFormat(PipeDataType::UniformSurface, false)
            .AddAcceptedDataFormat(PipeDataType::PointSurface, false);
        AddAnchorInputs(Mu::TlkHelper::AnchorType::Surface, true);
    }

    void AddMeasurement(const char* id, const char* displayName, const char* units)
    {
        AddMeasurementOutput(id, false, AT_END).SetDisplayName(displayName).SetUnits(units);
    }

    void AddRegion()
    {
        params.Register("Region", "Region", region);
        RegisterAnchoredRegion(&region);
    }

    /// The points inside the region, in mm, row by row, until the next call. Their list is kept from one execution to
    /// the next: what it has grown to once is there already.
    [[nodiscard]] std::span<const zPoint3d64f> PointsInRegion(void* surface)
    {
        if (pointList)
        {
            MU_CHECK(zArrayList_Purge(pointList.Get()));
        }
        Mu::TlkHelper::GetPointsFromRegion(surface, region.AbsoluteRegion(), pointList.InOut(), toolAlloc);
        return {static_cast<const zPoint3d64f*>(zArrayList_Items(pointList.Get())), zArrayList_Count(pointList.Get())};
    }

    Mu::TlkHelper::AnchoredSurfaceRegion region{true};
    Ta::Params::Group params;

private:
    Ta::Object<void*> pointList;
};
