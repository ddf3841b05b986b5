#include <MuVision/RefFrame.h>

#include <gtest/gtest.h>

#include <array>
#include <cmath>

namespace
{
using Mu::Vision::Point3d;
using Mu::Vision::RefFrame;

constexpr zM3dTransform3d ROWS{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12};

TEST(RefFrame, starts_as_the_identity)
{
    const RefFrame frame;
    EXPECT_TRUE(frame.IsIdentity());
    const zPoint3d64f same = frame.Apply(zPoint3d64f{1.5, -2.5, 3.5});
    EXPECT_EQ(same.x, 1.5);
    EXPECT_EQ(same.y, -2.5);
    EXPECT_EQ(same.z, 3.5);
}

TEST(RefFrame, with_any_entry_off_is_no_identity)
{
    for (std::size_t i = 0; i < 12; ++i)
    {
        std::array<double, 12> entries{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0};
        entries[i] = std::nextafter(entries[i], 2.0);
        const zM3dTransform3d rows{entries[0], entries[1], entries[2], entries[3], entries[4],  entries[5],
                                   entries[6], entries[7], entries[8], entries[9], entries[10], entries[11]};
        EXPECT_FALSE(RefFrame(rows).IsIdentity()) << "entry " << i;
    }
}

TEST(RefFrame, goes_back_to_the_identity)
{
    RefFrame frame(ROWS);
    EXPECT_FALSE(frame.IsIdentity());
    EXPECT_EQ(&frame.SetIdentity(), &frame);
    EXPECT_TRUE(frame.IsIdentity());
}

TEST(RefFrame, applies_its_rows)
{
    const RefFrame frame(ROWS);
    const zPoint3d64f point = frame.Apply(zPoint3d64f{1, 10, 100});
    EXPECT_EQ(point.x, 1 + 20 + 300 + 4);
    EXPECT_EQ(point.y, 5 + 60 + 700 + 8);
    EXPECT_EQ(point.z, 9 + 100 + 1100 + 12);
    const Point3d<double> same = frame.Apply(Point3d<double>{1, 10, 100});
    EXPECT_EQ(same.x, point.x);
    EXPECT_EQ(same.y, point.y);
    EXPECT_EQ(same.z, point.z);
}

TEST(RefFrame, applies_to_an_array_in_place)
{
    std::array<zPoint3d64f, 3> points{{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};
    RefFrame(ROWS).ApplyN(points.data(), points.size(), points.data());
    EXPECT_EQ(points[0].x, 5);
    EXPECT_EQ(points[1].y, 14);
    EXPECT_EQ(points[2].z, 23);
}

TEST(RefFrame, gives_its_rows_out)
{
    const zM3dTransform3d rows = RefFrame(ROWS).TozTransform();
    EXPECT_EQ(rows.xt, 4);
    EXPECT_EQ(rows.yz, 7);
    EXPECT_EQ(rows.zx, 9);
}
} // namespace
