#include <MuVision/Features.h>
#include <MuVision/Masks.h>
#include <MuVision/Pixels.h>
#include <MuVision/Sectors.h>

#include <gtest/gtest.h>

namespace
{
using namespace Mu::Vision;

constexpr double NONE = -1.7976931348623157e308;
constexpr int NO_PIXEL = static_cast<int>(0x80000000U);

TEST(Pixel_record, starts_without_a_position_and_holds_nothing)
{
    const Rect2d<int> rect;
    EXPECT_EQ(rect.x, NO_PIXEL);
    EXPECT_EQ(rect.y, NO_PIXEL);
    EXPECT_EQ(rect.width, 0);
    EXPECT_EQ(rect.height, 0);
    const Rect3d<int> box;
    EXPECT_EQ(box.x, NO_PIXEL);
    EXPECT_EQ(box.y, NO_PIXEL);
    EXPECT_EQ(box.z, NO_PIXEL);
    EXPECT_EQ(box.width, 0);
    EXPECT_EQ(box.length, 0);
    EXPECT_EQ(box.height, 0);
    const RunLength<int> run;
    EXPECT_EQ(run.start, NO_PIXEL);
    EXPECT_EQ(run.length, 0);
}

TEST(Pixel_record, has_its_fields_in_order)
{
    const Rect2d<int> rect{1, 2, 3, 4};
    EXPECT_EQ(rect.width, 3);
    EXPECT_EQ(rect.height, 4);
    const Rect3d<int> box{1, 2, 3, 4, 5, 6};
    EXPECT_EQ(box.width, 3);
    EXPECT_EQ(box.length, 4);
    EXPECT_EQ(box.z, 5);
    EXPECT_EQ(box.height, 6);
    EXPECT_EQ(sizeof(RunLength<int>), 8U);
}

TEST(Sector_record, starts_without_a_center)
{
    const AnnularSector3d<double> ring;
    EXPECT_EQ(ring.center.x, NONE);
    EXPECT_EQ(ring.center.y, NONE);
    EXPECT_EQ(ring.center.z, NONE);
    EXPECT_EQ(ring.innerRadius, 0);
    EXPECT_EQ(ring.outerRadius, 0);
    EXPECT_EQ(AnnularSector2d<double>().center.y, NONE);
    EXPECT_EQ(AnnularSectorXZ<double>().center.z, NONE);
    const EllipticalSectorXZ<double> ellipse;
    EXPECT_EQ(ellipse.center.x, NONE);
    EXPECT_EQ(ellipse.center.z, NONE);
    EXPECT_EQ(ellipse.angle, 0);
    EXPECT_EQ(EllipticalSector2d<double>().center.y, NONE);
}

TEST(Sector_record, has_its_fields_in_order)
{
    const AnnularSector2d<double> ring{1, 2, 3, 4, {5, 6}};
    EXPECT_EQ(ring.innerRadius, 1);
    EXPECT_EQ(ring.outerRadius, 2);
    EXPECT_EQ(ring.startAngle, 3);
    EXPECT_EQ(ring.angleRange, 4);
    EXPECT_EQ(ring.center.y, 6);
    const EllipticalSector2d<double> ellipse{1, 2, 3, 4, 5, 6, {7, 8}, 9};
    EXPECT_EQ(ellipse.innerMinor, 1);
    EXPECT_EQ(ellipse.innerMajor, 2);
    EXPECT_EQ(ellipse.outerMinor, 3);
    EXPECT_EQ(ellipse.outerMajor, 4);
    EXPECT_EQ(ellipse.startAngle, 5);
    EXPECT_EQ(ellipse.angleRange, 6);
    EXPECT_EQ(ellipse.center.x, 7);
    EXPECT_EQ(ellipse.angle, 9);
}

TEST(Feature_record, starts_null)
{
    EXPECT_EQ(Line3d<double>().point.z, NONE);
    EXPECT_EQ(Line3d<double>().direction.x, NONE);
    EXPECT_EQ(Circle3d<double>().center.y, NONE);
    EXPECT_EQ(Circle3d<double>().normal.z, NONE);
    EXPECT_EQ(Circle3d<double>().radius, 0);
    EXPECT_EQ(PlaneParams<double>().a, NONE);
    EXPECT_EQ(PlaneParams<double>().d, NONE);
}

TEST(Mask, kinds_have_the_numbers_that_parameters_store)
{
    EXPECT_EQ(static_cast<int>(MaskMode::Include), 0);
    EXPECT_EQ(static_cast<int>(MaskMode::Exclude), 1);
    EXPECT_EQ(static_cast<int>(MaskType::Circle), 0);
    EXPECT_EQ(static_cast<int>(MaskType::Ellipse), 1);
    EXPECT_EQ(static_cast<int>(MaskType::Polygon), 2);
    EXPECT_EQ(static_cast<int>(MaskType::Rectangle), 3);
    EXPECT_EQ(static_cast<int>(MaskType::Surface), 4);
    EXPECT_EQ(static_cast<int>(MaskType::SurfaceIntensity), 5);
    EXPECT_EQ(static_cast<int>(MaskType::WholeRectangle), 8);
    EXPECT_EQ(sizeof(MaskType), 4U);
}
} // namespace
