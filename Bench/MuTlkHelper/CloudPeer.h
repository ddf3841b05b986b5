#pragma once

#include <MuVision/Regions.h>

#include <cstddef>
#include <memory>

// What the Point Cloud Library takes for the box that InputUtils extracts. Present if the library is installed.

namespace Bench
{
/// The box filter of that library on the points of a surface, which it wants as 32-bit floats in a cloud of its own. To
/// make that cloud is not part of the filter.
class CloudPeer
{
public:
    /// @param surface  TvSurfaceMsg; points that are null are left out of the cloud
    /// @param region   turned about z only
    CloudPeer(void* surface, const Mu::Vision::Region3d<double>& region);
    ~CloudPeer();
    CloudPeer(const CloudPeer&) = delete;
    CloudPeer& operator=(const CloudPeer&) = delete;

    /// Filters into a cloud that is kept, and gives the number of its points.
    [[nodiscard]] std::size_t Filter();

private:
    struct Filtering;

    std::unique_ptr<Filtering> filtering;
};
} // namespace Bench
