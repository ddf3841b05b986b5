#pragma once

#include <Tools/SampleTool.h>

#include <TaApi/Object.h>
#include <zApi/zArrayList.h>

#include <span>

/// What sample tools with a region have in common, whatever the kind of data: the region, which follows an anchor, and
/// the points that are found in it.
/// @tparam Region  an anchored region
/// @tparam Point   the points of the data
template <typename Region, typename Point>
class RegionTool : public SampleTool
{
public:
    void UpdateConfig() override
    {
        // A region that was never switched off has no entry that says so.
        if (region.IsRegionUsed() != useRegion)
        {
            region.SetRegionUsed(useRegion);
        }
    }

    void InitializeRegions() override
    {
        // Data without any extent has no place for a region, and need not have one.
        if (useRegion)
        {
            SampleTool::InitializeRegions();
        }
    }

protected:
    void AddRegion()
    {
        params.Register("Region", "Region", region);
        RegisterAnchoredRegion(&region);
    }

    /// A region that is used only if the user says so; else the tool looks at all of the data.
    void AddOptionalRegion()
    {
        useRegion.SetUnchecked(false);
        params.Register("Use Region", "UseRegion", useRegion);
        AddRegion();
    }

    [[nodiscard]] bool UsesRegion() const
    {
        return useRegion;
    }

    /// The region where it lies on the data.
    [[nodiscard]] auto AbsoluteRegion() const
    {
        return region.AbsoluteRegion();
    }

    /// What `get(void** list)` adds to a list of points, until the next call. The list is kept from one execution to
    /// the next: what it has grown to once is there already.
    template <typename Get>
    [[nodiscard]] std::span<const Point> PointsBy(const Get& get)
    {
        if (pointList)
        {
            MU_CHECK(zArrayList_Purge(pointList.Get()));
        }
        get(pointList.InOut());
        return {static_cast<const Point*>(zArrayList_Items(pointList.Get())), zArrayList_Count(pointList.Get())};
    }

    /// The region in the drawing, if it is used.
    void DrawRegion(ToolGraphic& graphic) const
    {
        if (useRegion)
        {
            graphic.AddRegion(region.AbsoluteRegion());
        }
    }

private:
    Region region{true};
    Ta::Params::Value<bool> useRegion{true};
    Ta::Object<void*> pointList;
};
