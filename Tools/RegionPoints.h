#pragma once

#include <MuTlkHelper/InputUtils.h>

#include <TaApi/Object.h>
#include <zApi/zArrayList.h>

#include <span>

/// The points of a surface that lie in a region, in a list that is kept from one execution to the next: what it has
/// grown to once is there already.
class RegionPoints
{
public:
    /// The points inside, in mm, row by row, until the next read.
    [[nodiscard]] std::span<const zPoint3d64f> Read(void* surface, const Mu::Vision::Region3d<double>& region,
                                                    void* alloc)
    {
        if (points)
        {
            MU_CHECK(zArrayList_Purge(points.Get()));
        }
        Mu::TlkHelper::GetPointsFromRegion(surface, region, points.InOut(), alloc);
        return {static_cast<const zPoint3d64f*>(zArrayList_Items(points.Get())), zArrayList_Count(points.Get())};
    }

private:
    Ta::Object<void*> points;
};
