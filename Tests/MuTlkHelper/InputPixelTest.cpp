#include <MuTlkHelper/InputUtils.h>
#include <MuTlkHelper/PixelWorld.h>

#include <Support/Builders.h>
#include <Support/Raised.h>

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <limits>

namespace
{
using namespace Mu::TlkHelper;
using namespace Support;

constexpr double NONE = -1.7976931348623157e308;
constexpr double ENDLESS = std::numeric_limits<double>::infinity();
const double NOT_A_NUMBER = std::nan("");
constexpr zM3dTransform3d IDENTITY = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0};

InputData DataOf(void* message)
{
    InputData data;
    SetInputData(message, &data);
    return data;
}

struct Conversion
{
    double value;
    int pixel;
    int height;
};

TEST(World_to_pixel, rounds_halves_away_from_zero_and_saturates)
{
    const Conversion conversions[] = {
        {0.0, 0, 0},
        {-0.0, 0, 0},
        {0.49, 0, 0},
        {0.5, 1, 1},
        {1.5, 2, 2},
        {-0.5, -1, -1},
        {-0.49, 0, 0},
        {-1.5, -2, -2},
        {32767.4, 32767, 32767},
        {32767.6, 32768, 32767},
        {-32767.4, -32767, -32767},
        {-32767.5, -32768, -32768},
        {-40000.0, -40000, -32768},
        {1e300, 2147483647, 32767},
        {-1e300, -2147483648, -32768},
        {ENDLESS, 2147483647, 32767},
        {-ENDLESS, -2147483648, -32768},
        {NOT_A_NUMBER, -2147483648, -32768},
    };
    for (const Conversion& c : conversions)
    {
        SCOPED_TRACE(c.value);
        EXPECT_EQ(WorldToPixel(c.value, 0, 1), c.pixel);
        EXPECT_EQ(WorldToHeightPixel(c.value, 0, 1), c.height);
    }
}

TEST(World_to_pixel, takes_off_the_offset_before_it_scales)
{
    EXPECT_EQ(WorldToPixel(12, 10, 0.5), 4);
    EXPECT_EQ(WorldToPixel(12, 10, -0.5), -4);
    EXPECT_EQ(WorldToHeightPixel(12, 10, 0.5), 4);
    EXPECT_EQ(WorldToPixel(10, 10, 0), -2147483648) << "0 / 0 is NaN";
    EXPECT_EQ(WorldToPixel(11, 10, 0), 2147483647);
}

TEST(Pixel_to_world, multiplies_then_adds)
{
    EXPECT_EQ(PixelToWorld(3, 10, 0.5), 11.5);
    EXPECT_EQ(PixelToWorld(3, 0.1, 0.1), 3 * 0.1 + 0.1);
}

TEST(Samples_in_bounds, are_one_range_for_either_sign_of_the_scale)
{
    const auto expect = [](const Bounds& bounds, const Axis& axis, int low, int high) {
        const auto window = SamplesIn(bounds, axis);
        ASSERT_TRUE(window.has_value());
        EXPECT_EQ(window->low, low);
        EXPECT_EQ(window->high, high);
    };
    expect({2, 4}, {0, 0.5}, 4, 8);
    expect({2, 4}, {0, -0.5}, -8, -4);
    expect({2, 4}, {10, 1}, -8, -6);
    expect({-ENDLESS, ENDLESS}, {0, 1}, -32768, 32767);
    expect({3, 3}, {3, 0}, -32768, 32767);
    EXPECT_TRUE(SamplesIn({2, 4}, {0, 0})->IsEmpty());
    EXPECT_TRUE(SamplesIn({2.1, 2.9}, {0, 1})->IsEmpty());
    EXPECT_TRUE(SamplesIn({NOT_A_NUMBER, 4}, {0, 1})->IsEmpty());
    EXPECT_TRUE(SamplesIn({2, NOT_A_NUMBER}, {0, 1})->IsEmpty());
    EXPECT_FALSE(SamplesIn({2, 4}, {0, ENDLESS}).has_value());
    EXPECT_FALSE(SamplesIn({2, 4}, {NOT_A_NUMBER, 1}).has_value());
}

TEST(First_place, is_found_from_every_guess)
{
    for (std::size_t count = 0; count <= 9; ++count)
    {
        for (std::size_t first = 0; first <= count; ++first)
        {
            for (std::size_t guess = 0; guess <= count + 3; ++guess)
            {
                EXPECT_EQ(FirstPlace(count, guess, [first](std::size_t place) { return place >= first; }), first)
                    << "of " << count << " guessed " << guess;
            }
        }
    }
}

TEST(Generalized_points, stand_40_bytes_apart_with_their_fields_in_order)
{
    EXPECT_EQ(sizeof(TlkSurfaceGeneralized3dPoint), 40U);
    EXPECT_EQ(offsetof(TlkSurfaceGeneralized3dPoint, z), 16U);
    EXPECT_EQ(offsetof(TlkSurfaceGeneralized3dPoint, column), 24U);
    EXPECT_EQ(offsetof(TlkSurfaceGeneralized3dPoint, row), 28U);
    EXPECT_EQ(offsetof(TlkSurfaceGeneralized3dPoint, height), 32U);
    EXPECT_EQ(offsetof(TlkSurfaceGeneralized3dPoint, intensity), 36U);
    EXPECT_EQ(offsetof(TlkSurfaceGeneralizedPoint, column), 16U);
    EXPECT_EQ(offsetof(TlkSurfaceGeneralizedPoint, row), 20U);
}

TEST(Set_input_data, copies_the_facts_and_shares_the_message)
{
    const auto surface =
        Surface({{1, 2, 3}, {4, 5, 6}}).Offset(1, 2, 3).Scale(4, 5, 6).Intensity({{1, 2, 3}, {4, 5, 6}});
    {
        const InputData data = DataOf(surface.Get());
        EXPECT_EQ(data.width, 3);
        EXPECT_EQ(data.length, 2);
        EXPECT_EQ(data.offset.y, 2);
        EXPECT_EQ(data.scale.z, 6);
        EXPECT_NE(data.hasIntensity, 0);
        EXPECT_EQ(data.surface.Get(), surface.Get());
        EXPECT_EQ(xzObject_ReferenceCount(surface.Get()), 2);
    }
    EXPECT_EQ(xzObject_ReferenceCount(surface.Get()), 1);
}

TEST(Set_input_data, releases_the_message_that_it_replaces)
{
    const auto first = Surface({{1}});
    const auto second = Surface({{1, 2}});
    InputData data = DataOf(first.Get());
    SetInputData(second.Get(), &data);
    EXPECT_EQ(xzObject_ReferenceCount(first.Get()), 1);
    EXPECT_EQ(data.width, 2);
    EXPECT_EQ(data.hasIntensity, 0);
}

TEST(Set_input_data, keeps_what_it_copied_when_the_message_changes)
{
    auto surface = Surface({{1}}).Scale(1, 1, 1);
    const InputData data = DataOf(surface.Get());
    surface.Scale(2, 2, 2);
    EXPECT_EQ(data.scale.x, 1);
}

TEST(Set_input_data, without_a_record_raises)
{
    EXPECT_EQ(RaisedBy([] { SetInputData(nullptr, nullptr); }), InputFailure(-997, "SetInputData"));
}

TEST(Pixel_position, is_invalid_from_width_and_length_on_and_below_zero)
{
    const auto surface = Surface({{1, 2, 3}, {4, 5, 6}});
    const InputData data = DataOf(surface.Get());
    EXPECT_FALSE(IsPixelPositionInvalid(data, 0, 0));
    EXPECT_FALSE(IsPixelPositionInvalid(data, 2, 1));
    EXPECT_TRUE(IsPixelPositionInvalid(data, 3, 0));
    EXPECT_TRUE(IsPixelPositionInvalid(data, 0, 2));
    EXPECT_TRUE(IsPixelPositionInvalid(data, -1, 0));
    EXPECT_TRUE(IsPixelPositionInvalid(data, 0, -1));
}

TEST(Pixel_position, is_invalid_everywhere_in_an_empty_surface)
{
    const auto surface = Surface({});
    EXPECT_TRUE(IsPixelPositionInvalid(DataOf(surface.Get()), 0, 0));
}

TEST(Surface_height, is_the_pixel_in_world_units)
{
    const auto surface = Surface({{1, 2}, {3, NullPixel}}).Offset(0, 0, 10).Scale(1, 1, 0.5);
    const InputData data = DataOf(surface.Get());
    EXPECT_EQ(GetSurfaceHeightPixel(data, 1, 0), 2);
    EXPECT_EQ(GetSurfaceHeight(data, 0, 1), 11.5);
}

TEST(Surface_height, of_a_null_pixel_is_null)
{
    const auto surface = Surface({{1, 2}, {3, NullPixel}}).Offset(0, 0, 10);
    EXPECT_EQ(GetSurfaceHeight(DataOf(surface.Get()), 1, 1), NONE);
}

TEST(Surface_height, of_triples_is_their_z)
{
    const auto surface = PointSurface({{{7, 8, 9}, {NullPixel, NullPixel, 4}}}).Offset(1, 1, 100);
    const InputData data = DataOf(surface.Get());
    EXPECT_EQ(GetSurfaceHeightPixel(data, 0, 0), 9);
    EXPECT_EQ(GetSurfaceHeight(data, 1, 0), 104);
}

TEST(Surface_height, outside_raises_under_the_name_of_the_operation)
{
    const auto surface = Surface({{1, 2}});
    const InputData data = DataOf(surface.Get());
    EXPECT_EQ(RaisedBy([&] { static_cast<void>(GetSurfaceHeightPixel(data, 2, 0)); }),
              InputFailure(-999, "GetSurfaceHeightPixel"));
    EXPECT_EQ(RaisedBy([&] { static_cast<void>(GetSurfaceHeight(data, 0, 1)); }),
              InputFailure(-999, "GetSurfaceHeight"));
    EXPECT_EQ(RaisedBy([&] { static_cast<void>(GetSurfaceIntensityBasePtr(data, 1)); }),
              InputFailure(-999, "GetSurfaceIntensityBasePtr"));
    EXPECT_EQ(RaisedBy([&] { static_cast<void>(GetSurfaceIntensityPtr(data, -1, 0)); }),
              InputFailure(-999, "GetSurfaceIntensityPtr"));
    EXPECT_EQ(RaisedBy([&] { static_cast<void>(GetSurfaceIntensity(data, -1, 0)); }),
              InputFailure(-999, "GetSurfaceIntensityPtr"));
}

TEST(Surface_height, of_a_message_without_such_points_raises)
{
    const auto surface = Surface({{1, 2}});
    const auto image = Image({{1, 2}});
    InputData data = DataOf(surface.Get());
    data.surface.Reset(image.Get(), true);
    EXPECT_EQ(RaisedBy([&] { static_cast<void>(GetSurfaceHeight(data, 0, 0)); }),
              InputFailure(-984, "GetSurfaceHeightPixel"));
}

TEST(Surface_height, of_a_record_that_tells_of_more_than_the_message_has_raises)
{
    const auto surface = Surface({{1, 2}});
    InputData data = DataOf(surface.Get());
    data.width = 100;
    EXPECT_EQ(RaisedBy([&] { static_cast<void>(GetSurfaceHeightPixel(data, 50, 0)); }),
              InputFailure(-999, "GetSurfaceHeightPixel"));
}

TEST(Surface_intensity, is_read_at_the_pixel_and_from_the_row)
{
    const auto surface = Surface({{1, 2}, {3, 4}}).Intensity({{10, 20}, {30, 40}});
    const InputData data = DataOf(surface.Get());
    EXPECT_EQ(GetSurfaceIntensity(data, 1, 0), 20);
    EXPECT_EQ(*GetSurfaceIntensityPtr(data, 0, 1), 30);
    EXPECT_EQ(GetSurfaceIntensityBasePtr(data, 1)[1], 40);
}

TEST(Surface_intensity, of_a_surface_without_is_null_and_zero)
{
    const auto surface = Surface({{1, 2}});
    const InputData data = DataOf(surface.Get());
    EXPECT_EQ(GetSurfaceIntensityBasePtr(data, 0), nullptr);
    EXPECT_EQ(GetSurfaceIntensityPtr(data, 1, 0), nullptr);
    EXPECT_EQ(GetSurfaceIntensity(data, 1, 0), 0);
}

TEST(Surface_intensity, of_16_bits_is_refused_by_every_reader_of_a_pixel)
{
    const Ta::Object<void*> surface = Surface({{1, 2}}).Intensity16({{0x0102, 0x0304}});
    const InputData data = DataOf(surface.Get());
    EXPECT_EQ(RaisedBy([&] { static_cast<void>(GetSurfaceIntensityBasePtr(data, 0)); }),
              InputFailure(-997, "GetSurfaceIntensityBasePtr"));
    EXPECT_EQ(RaisedBy([&] { static_cast<void>(GetSurfaceIntensity(data, 1, 0)); }),
              InputFailure(-997, "GetSurfaceIntensityPtr"));
    TlkSurfaceGeneralized3dPoint corrected{1, 2, 3, 4, 5, 6, 7};
    EXPECT_EQ(RaisedBy([&] {
                  RefRegionCorrectPoint(data, {{0, 0, 0}, {0, 0, 1}}, {0, 0, 0, 0}, &corrected);
              }),
              InputFailure(-997, "GetSurfaceIntensityBasePtr"));
    EXPECT_EQ(corrected.intensity, 7) << "nothing is written";
    zPoint3d64f place{1, 2, 3};
    const zM3dTransform3d none{zNULL_64F, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0};
    z8u grey = 7;
    EXPECT_EQ(RaisedBy([&] { GetTransformedPointFromPixel(data, none, 0, 0, &place, nullptr, &grey, 0); }),
              InputFailure(-997, "GetSurfaceIntensityBasePtr"));
    EXPECT_EQ(place.x, 1) << "nothing is written";
    GetTransformedPointFromPixel(data, none, 0, 1, &place, nullptr, nullptr, 0);
    EXPECT_EQ(place.z, 2) << "an intensity that nobody asks for is not read";
}

/// What `GetTransformedPointFromPixel` wrote and raised.
struct Seen
{
    zPoint3d64f point{7, 7, 7};
    short height = 7;
    unsigned char intensity = 7;
    Raised raised;
};

Seen Look(void* surface, const zM3dTransform3d& transform, int row, int column, int nullOutside)
{
    Seen seen;
    const InputData data = DataOf(surface);
    seen.raised = RaisedBy([&] {
        GetTransformedPointFromPixel(data, transform, row, column, &seen.point, &seen.height, &seen.intensity,
                                     nullOutside);
    });
    return seen;
}

void ExpectPoint(const zPoint3d64f& point, double x, double y, double z)
{
    EXPECT_EQ(point.x, x);
    EXPECT_EQ(point.y, y);
    EXPECT_EQ(point.z, z);
}

class Transformed_pixel : public testing::Test
{
protected:
    SurfaceBuilder surface = Surface({{1, 2, 3}, {4, NullPixel, 6}}).Offset(10, 20, 30).Scale(0.5, 2, 0.1);
    zM3dTransform3d oneColumnRight{1, 0, 0, 0.5, 0, 1, 0, 0, 0, 0, 1, 99};
    Raised outside = InputFailure(0, "GetTransformedPointFromPixel");
};

TEST_F(Transformed_pixel, takes_row_before_column)
{
    const Seen seen = Look(surface.Get(), IDENTITY, 1, 2, 0);
    EXPECT_EQ(seen.raised, Raised());
    EXPECT_EQ(seen.height, 6);
    ExpectPoint(seen.point, 11, 22, 6 * 0.1 + 30);
}

TEST_F(Transformed_pixel, has_the_height_of_the_pixel_there_and_not_of_the_transform)
{
    const Seen seen = Look(surface.Get(), oneColumnRight, 0, 0, 0);
    EXPECT_EQ(seen.raised, Raised());
    EXPECT_EQ(seen.height, 2);
    ExpectPoint(seen.point, 10.5, 20, 2 * 0.1 + 30);
}

TEST_F(Transformed_pixel, of_a_null_pixel_has_a_null_height)
{
    surface.Intensity({{1, 2, 3}, {4, 5, 6}});
    const Seen seen = Look(surface.Get(), IDENTITY, 1, 1, 1);
    EXPECT_EQ(seen.raised, Raised());
    EXPECT_EQ(seen.height, -32768);
    EXPECT_EQ(seen.intensity, 5);
    ExpectPoint(seen.point, 10.5, 22, NONE);
}

TEST_F(Transformed_pixel, without_intensity_has_0)
{
    EXPECT_EQ(Look(surface.Get(), IDENTITY, 0, 0, 0).intensity, 0);
}

TEST_F(Transformed_pixel, is_the_pixel_itself_if_an_entry_of_the_transform_is_null)
{
    double zM3dTransform3d::*const entries[] = {&zM3dTransform3d::xx, &zM3dTransform3d::xy, &zM3dTransform3d::xz,
                                                &zM3dTransform3d::xt, &zM3dTransform3d::yx, &zM3dTransform3d::yy,
                                                &zM3dTransform3d::yz, &zM3dTransform3d::yt, &zM3dTransform3d::zx,
                                                &zM3dTransform3d::zy, &zM3dTransform3d::zz, &zM3dTransform3d::zt};
    for (double zM3dTransform3d::*const entry : entries)
    {
        zM3dTransform3d transform = oneColumnRight;
        transform.*entry = NONE;
        const Seen seen = Look(surface.Get(), transform, 1, 0, 0);
        EXPECT_EQ(seen.raised, Raised());
        EXPECT_EQ(seen.height, 4);
        ExpectPoint(seen.point, 10, 22, 4 * 0.1 + 30);
    }
}

TEST_F(Transformed_pixel, outside_raises_after_its_outputs_are_null)
{
    const Seen seen = Look(surface.Get(), oneColumnRight, 0, 2, 1);
    EXPECT_EQ(seen.raised, outside);
    EXPECT_EQ(seen.height, -32768);
    EXPECT_EQ(seen.intensity, 0);
    ExpectPoint(seen.point, NONE, NONE, NONE);
}

TEST_F(Transformed_pixel, outside_keeps_its_place_if_the_flag_is_0)
{
    const Seen seen = Look(surface.Get(), oneColumnRight, 0, 2, 0);
    EXPECT_EQ(seen.raised, outside);
    ExpectPoint(seen.point, 11.5, 20, 99);
}

TEST_F(Transformed_pixel, outside_and_without_transform_has_a_null_height)
{
    zM3dTransform3d none = IDENTITY;
    none.zt = NONE;
    const Seen seen = Look(surface.Get(), none, -1, 0, 0);
    EXPECT_EQ(seen.raised, outside);
    ExpectPoint(seen.point, 10, 18, NONE);
}

TEST_F(Transformed_pixel, leaves_out_outputs_that_are_not_asked_for)
{
    const InputData data = DataOf(surface.Get());
    EXPECT_EQ(RaisedBy([&] { GetTransformedPointFromPixel(data, IDENTITY, 0, 0, nullptr, nullptr, nullptr, 0); }),
              Raised());
    EXPECT_EQ(RaisedBy([&] { GetTransformedPointFromPixel(data, IDENTITY, 5, 0, nullptr, nullptr, nullptr, 1); }),
              outside);
}

constexpr zPlane3d64f PLANE = {{0, 0, 3}, {0, 0, 2}}; // z = 3, with a normal of length 2

TEST(Reference_plane, gives_a_point_on_it_the_height_0)
{
    const auto surface = Surface({{1}}).Offset(0, 0, -1).Scale(1, 1, 0.5);
    TlkSurfaceGeneralized3dPoint point{5, 6, 3, 7, 8, 99, 200};
    RefCorrectPoint(DataOf(surface.Get()), PLANE, &point);
    EXPECT_EQ(point.z, 0.0);
    EXPECT_EQ(point.height, 2);
    EXPECT_EQ(point.x, 5);
    EXPECT_EQ(point.y, 6);
    EXPECT_EQ(point.column, 7);
    EXPECT_EQ(point.row, 8);
    EXPECT_EQ(point.intensity, 200);
}

TEST(Reference_plane, counts_the_length_of_its_normal)
{
    const auto surface = Surface({{1}});
    TlkSurfaceGeneralized3dPoint point{0, 0, 4, 0, 0, 4, 0};
    RefCorrectPoint(DataOf(surface.Get()), PLANE, &point);
    EXPECT_EQ(point.z, 2.0);
    EXPECT_EQ(point.height, 2);
}

TEST(Reference_plane, corrects_the_pixel_of_a_region)
{
    const auto surface = Surface({{1, 2}, {3, 40}}).Offset(0, 0, 1).Scale(1, 1, 0.5).Intensity({{1, 2}, {3, 4}});
    TlkSurfaceGeneralized3dPoint point{};
    RefRegionCorrectPoint(DataOf(surface.Get()), PLANE, {11, 12, 1, 1}, &point);
    EXPECT_EQ(point.x, 11);
    EXPECT_EQ(point.y, 12);
    EXPECT_EQ(point.column, 1);
    EXPECT_EQ(point.row, 1);
    EXPECT_EQ(point.z, 36.0); // 40 is 21 mm, 18 above the plane
    EXPECT_EQ(point.height, 70);
    EXPECT_EQ(point.intensity, 4);
}

TEST(Reference_plane, leaves_a_null_pixel_null)
{
    const auto surface = Surface({{1, NullPixel}}).Intensity({{1, 2}});
    TlkSurfaceGeneralized3dPoint point{};
    RefRegionCorrectPoint(DataOf(surface.Get()), PLANE, {11, 12, 1, 0}, &point);
    EXPECT_EQ(point.x, 11);
    EXPECT_EQ(point.column, 1);
    EXPECT_EQ(point.z, NONE);
    EXPECT_EQ(point.height, -32768);
    EXPECT_EQ(point.intensity, 0);
}

TEST(Reference_plane, without_intensity_gives_0)
{
    const auto surface = Surface({{1}});
    TlkSurfaceGeneralized3dPoint point{};
    RefRegionCorrectPoint(DataOf(surface.Get()), PLANE, {0, 0, 0, 0}, &point);
    EXPECT_EQ(point.intensity, 0);
    EXPECT_EQ(point.z, -4.0);
}

TEST(Reference_plane, takes_heights_inside_the_surface_only)
{
    const auto heights = Surface({{1}});
    const auto triples = PointSurface({{{1, 2, 3}}});
    TlkSurfaceGeneralized3dPoint point{};
    const auto correct = [&point](void* surface, int column, int row) {
        const InputData data = DataOf(surface);
        return RaisedBy([&] { RefRegionCorrectPoint(data, PLANE, {0, 0, column, row}, &point); });
    };
    EXPECT_EQ(correct(triples.Get(), 0, 0), InputFailure(-984, "RefRegionCorrectPoint"));
    EXPECT_EQ(correct(heights.Get(), 0, 1), InputFailure(-999, "GetSurfaceIntensityBasePtr"));
    EXPECT_EQ(correct(heights.Get(), 1, 0), InputFailure(-999, "RefRegionCorrectPoint"));
    EXPECT_EQ(correct(heights.Get(), -1, 0), InputFailure(-999, "RefRegionCorrectPoint"));
}

struct Kernel
{
    double size;
    int pixels;
};

TEST(Kernel_size, is_odd_and_at_least_1)
{
    const Kernel kernels[] = {{1.4, 1},    {2.0, 1},          {3.2, 3},
                              {4.4, 3},    {4.5, 5},          {0.0, 1},
                              {-5.0, 1},   {2.5, 3},          {1e300, 2147483647},
                              {-1e300, 1}, {NOT_A_NUMBER, 1}, {ENDLESS, 2147483647}};
    for (const Kernel& kernel : kernels)
    {
        int width = 0;
        int length = 0;
        ConvertKernelSizeMmToPixel(kernel.size, kernel.size * 2, {1, 2, 9}, &width, &length);
        EXPECT_EQ(width, kernel.pixels) << kernel.size;
        EXPECT_EQ(length, kernel.pixels) << kernel.size;
    }
}
} // namespace
