#include "CloudPeer.h"

#include <Support/Lists.h>
#include <Support/NaiveExtraction.h>

#include <pcl/filters/crop_box.h>
#include <pcl/point_types.h>

#include <numbers>

namespace Bench
{
struct CloudPeer::Filtering
{
    pcl::PointCloud<pcl::PointXYZ>::Ptr cloud{new pcl::PointCloud<pcl::PointXYZ>};
    pcl::PointCloud<pcl::PointXYZ> kept;
    pcl::CropBox<pcl::PointXYZ> box;
};

CloudPeer::CloudPeer(void* surface, const Mu::Vision::Region3d<double>& region)
    : filtering(std::make_unique<Filtering>())
{
    constexpr double ENDLESS = 1e7;
    Support::Naive::PointsFromRegion(
        surface, {0, 0, 0, ENDLESS, ENDLESS, ENDLESS, 0, 0, 0}, [this](const zPoint3d64f& point) {
            filtering->cloud->push_back(
                {static_cast<float>(point.x), static_cast<float>(point.y), static_cast<float>(point.z)});
        });
    const auto half = [](double extent) { return static_cast<float>(extent / 2); };
    auto& box = filtering->box;
    box.setInputCloud(filtering->cloud);
    box.setMin({-half(region.width), -half(region.length), -half(region.height), 1});
    box.setMax({half(region.width), half(region.length), half(region.height), 1});
    box.setTranslation({static_cast<float>(region.x), static_cast<float>(region.y), static_cast<float>(region.z)});
    box.setRotation({0, 0, static_cast<float>(region.zAngle * std::numbers::pi / 180)});
}

CloudPeer::~CloudPeer() = default;

std::size_t CloudPeer::Filter()
{
    filtering->box.filter(filtering->kept);
    return filtering->kept.size();
}
} // namespace Bench
