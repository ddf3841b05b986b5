#include "DrawnElements.h"

#include <cstring>

namespace
{
using namespace Support;
using namespace Mu::TlkHelper;
using TaPipe::TpGraphicKind;
using TaPipe::TpGraphicPositionType;

constexpr zPoint3d64f A{0.1, -2.5, 3e10};
constexpr zPoint3d64f B{4.0, 5.7, -6.25};

zPoint3d64f MinusOf(const zPoint3d64f& a, const zPoint3d64f& b)
{
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}

// --- colours --------------------------------------------------------------------------------------------------------

TEST(House_colours, are_opaque_yellow_and_cyan)
{
    EXPECT_EQ(DecorationColor, 0xFFFFFF00U);
    EXPECT_EQ(FoundFeatureColor, 0xFF00FFFFU);
}

TEST(Color_to_rgb, takes_red_green_and_blue_and_leaves_the_fourth_byte)
{
    zRgb rgb{1, 2, 3, 77};
    ColorToRgb(0x80FF8040U, &rgb);
    EXPECT_EQ(rgb.r, 0xFF);
    EXPECT_EQ(rgb.g, 0x80);
    EXPECT_EQ(rgb.b, 0x40);
    EXPECT_EQ(rgb.a, 77);
}

// --- single elements ------------------------------------------------------------------------------------------------

TEST(Drawing_a_point, marks_one_narrowed_point)
{
    ExpectDrawn({
        {"a point", [](void* g) { GraphicAddPoint(g, A, 3.5F, COLOR, nullptr, 1); }, {Marks(3.5, 1, COLOR, {A})}},
        {"z not a number",
         [](void* g) {
             GraphicAddPoint(g, {1, 2, NOT_A_NUMBER}, 1, COLOR, nullptr, 0);
         },
         {Marks(1, 0, COLOR, {{1, 2, NOT_A_NUMBER}})}},
    });
}

TEST(Drawing_a_point, with_a_null_coordinate_draws_nothing)
{
    for (const zPoint3d64f& point :
         {zPoint3d64f{NULL_VALUE, 2, 3}, zPoint3d64f{1, NULL_VALUE, 3}, zPoint3d64f{1, 2, NULL_VALUE}})
    {
        EXPECT_EQ(DrawnBy([&](void* g) { GraphicAddPoint(g, point, 1, COLOR, nullptr, 0); }), Drawing());
        EXPECT_EQ(RaisedFrom([&] { GraphicAddPoint(nullptr, point, 1, COLOR, nullptr, 0); }), Raised());
    }
}

TEST(Drawing_a_ray, narrows_both_points_and_passes_nulls_on)
{
    ExpectDrawn({
        {"a ray", [](void* g) { GraphicAddRay(g, A, B, 1.5F, COLOR, nullptr); }, {Ray(A, B, 1.5, COLOR)}},
        {"nulls",
         [](void* g) {
             GraphicAddRay(g, {NULL_VALUE, 0, 0}, {0, NULL_VALUE, 1}, 1, COLOR, nullptr);
         },
         {Ray({-INFINITE, 0, 0}, {0, -INFINITE, 1}, 1, COLOR)}},
    });
}

TEST(Drawing_a_label, widens_its_position)
{
    zPoint3d32f at{0.1F, 2.0F, 3.0F};
    ExpectDrawn({
        {"a label",
         [&](void* g) { GraphicAddLabel(g, "Höhe", &at, nullptr); },
         {Other(TpGraphicKind::Label, {AsFloat(0.1), 2, 3}, "Höhe")}},
        {"no position", [](void* g) { GraphicAddLabel(g, "Höhe", nullptr, nullptr); }, {}},
    });
}

TEST(Drawing_a_label, leaves_a_missing_text_to_the_host)
{
    zPoint3d32f at{};
    const Ta::Object<void*> graphic = NewGraphic();
    EXPECT_EQ(RaisedFrom([&] { GraphicAddLabel(graphic.Get(), nullptr, &at, nullptr); }),
              RaisedByDrawing(-999, "GraphicAddLabel"));
    EXPECT_EQ(TpGraphic_Count(graphic.Get()), 0U);
}

TEST(Drawing_a_position, keeps_type_and_doubles_and_passes_nulls_on)
{
    ExpectDrawn({
        {"a position",
         [](void* g) { GraphicAddPosition(g, A, TpGraphicPositionType::Anchor, nullptr); },
         {Other(TpGraphicKind::Position, {2, A.x, A.y, A.z})}},
        {"null",
         [](void* g) {
             GraphicAddPosition(g, {NULL_VALUE, 1, 2}, TpGraphicPositionType::Result, nullptr);
         },
         {Other(TpGraphicKind::Position, {0, NULL_VALUE, 1, 2})}},
    });
}

TEST(Drawing_an_arrow, makes_a_wide_yellow_line_with_one_ending)
{
    ExpectDrawn({
        {"an arrow", [](void* g) { GraphicAddArrow(g, A, B, nullptr); }, {Line(2, YELLOW, ARROW, {A, B})}},
        {"null",
         [](void* g) {
             GraphicAddArrow(g, {NULL_VALUE, 0, 0}, B, nullptr);
         },
         {Line(2, YELLOW, ARROW, {{-INFINITE, 0, 0}, B})}},
    });
}

TEST(Drawing_a_fitted_line, points_from_the_second_point_to_the_first)
{
    ExpectDrawn({
        {"in space", [](void* g) { GraphicAddFittedLine(g, A, B, nullptr); }, InfiniteLine(A, MinusOf(A, B), 1, CYAN)},
        {"of a profile",
         [](void* g) {
             GraphicAddFittedLine(g, zPoint64f{1.5, 2}, zPoint64f{0.5, 7}, nullptr);
         },
         {Ray({1.5, 0, 2}, {1, 0, -5}, 1, CYAN), Ray({1.5, 0, 2}, {-1, 0, 5}, 1, CYAN)}},
        {"null",
         [](void* g) {
             GraphicAddFittedLine(g, zPoint64f{NULL_VALUE, 2}, zPoint64f{0.5, 7}, nullptr);
         },
         InfiniteLine({-INFINITE, 0, 2}, {-INFINITE, 0, -5}, 1, CYAN)},
    });
}

// --- lists ----------------------------------------------------------------------------------------------------------

TEST(Drawing_points, of_a_list_of_doubles_leaves_out_nulls)
{
    const auto list = List64({A, {NULL_VALUE, 0, 0}, {0, NULL_VALUE, 0}, {0, 0, NULL_VALUE}, {1, NOT_A_NUMBER, 2}, B});
    const Points kept{A, {1, NOT_A_NUMBER, 2}, B};
    ExpectDrawn({
        {"points",
         [&](void* g) { GraphicAddPoints(g, list.Get(), 1.5F, COLOR, nullptr, 1); },
         {Marks(1.5, 1, COLOR, kept)}},
        {"lines",
         [&](void* g) { GraphicAddLines(g, list.Get(), 1.5F, COLOR, nullptr); },
         {Line(1.5, COLOR, PLAIN, kept)}},
        {"found points", [&](void* g) { GraphicAddFoundPoints(g, list.Get(), nullptr); }, {Marks(1, 2, CYAN, kept)}},
        {"contour lines",
         [&](void* g) { GraphicAddContourLines(g, list.Get(), nullptr); },
         {Line(1, CYAN, PLAIN, kept)}},
    });
}

TEST(Drawing_points, of_a_list_of_floats_takes_them_as_they_stand)
{
    constexpr float NULL_32F = -3.4028234663852886e+38F;
    const auto list = List32({{1, 2, 3}, {NULL_32F, 4, 5}});
    const Points all{{1, 2, 3}, {NULL_32F, 4, 5}};
    ExpectDrawn({
        {"points", [&](void* g) { GraphicAddPoints(g, list.Get(), 1, COLOR, nullptr, 0); }, {Marks(1, 0, COLOR, all)}},
        {"lines", [&](void* g) { GraphicAddLines(g, list.Get(), 1, COLOR, nullptr); }, {Line(1, COLOR, PLAIN, all)}},
    });
    EXPECT_EQ(xzObject_ReferenceCount(list.Get()), 1);
    EXPECT_EQ(zArrayList_Count(list.Get()), 2U);
    EXPECT_EQ(ItemsOf<zPoint3d32f>(list)[1].y, 4.0F);
}

TEST(Drawing_points, of_a_long_list_thins_doubles_but_not_floats)
{
    std::vector<zPoint3d64f> wide(25'000);
    std::vector<zPoint3d32f> narrow(25'000);
    for (std::size_t i = 0; i < wide.size(); ++i)
    {
        wide[i].x = static_cast<double>(i);
    }
    Points everySecond;
    for (std::size_t i = 0; i < wide.size(); i += 2)
    {
        everySecond.push_back(wide[i]);
    }
    const auto list64 = List64(wide);
    const auto list32 = List32(narrow);
    EXPECT_EQ(DrawnBy([&](void* g) { GraphicAddPoints(g, list64.Get(), 1, COLOR, nullptr, 0); }),
              (Drawing{Marks(1, 0, COLOR, everySecond)}));
    EXPECT_EQ(LineDrawnBy([&](void* g) { GraphicAddLines(g, list32.Get(), 1, COLOR, nullptr); }).size(), 25'000U);
}

// The host reads the doubles of `count` records as `count` points of three floats: the first half of their bytes.
TEST(Drawing_points, of_records_hands_on_doubles_but_lines_are_of_floats)
{
    const auto list = Records({{1, 2, 3, 0, 0, 0, 0}, {NULL_VALUE, 5, 6, 0, 0, 0, 0}});
    const std::array<double, 6> doubles = {1, 2, 3, NULL_VALUE, 5, 6};
    std::array<zPoint3d32f, 2> misread{};
    std::memcpy(misread.data(), doubles.data(), sizeof(misread));
    ExpectDrawn({
        {"points",
         [&](void* g) { GraphicAddPoints(g, list.Get(), 1, COLOR, nullptr, 0); },
         {Marks(1, 0, COLOR, WidePoints(misread.data(), misread.size()))}},
        {"lines",
         [&](void* g) { GraphicAddLines(g, list.Get(), 1, COLOR, nullptr); },
         {Line(1, COLOR, PLAIN, {{1, 2, 3}, {-INFINITE, 5, 6}})}},
    });
}

TEST(Drawing_points, of_a_long_list_of_records_thins_it)
{
    const auto list = Records(std::vector<TlkSurfaceGeneralized3dPoint>(30'001));
    const Ta::Object<void*> graphic = NewGraphic();
    GraphicAddPoints(graphic.Get(), list.Get(), 1, COLOR, nullptr, 0);
    GraphicAddLines(graphic.Get(), list.Get(), 1, COLOR, nullptr);
    EXPECT_EQ(TpGraphicPointSet_Count(TpGraphic_At(graphic.Get(), 0)), 10'001U);
    EXPECT_EQ(TpGraphicLineSet_Count(TpGraphic_At(graphic.Get(), 1)), 10'001U);
}

TEST(Drawing_points, of_no_list_an_empty_one_of_doubles_or_another_type_draws_nothing)
{
    const auto empty = List64({});
    const auto flat = ListOfItems<zPoint64f>(zTypeOf(zPoint64f), {{1, 2}});
    const auto noList = NewGraphic();
    for (void* const list : {static_cast<void*>(nullptr), empty.Get(), flat.Get(), noList.Get()})
    {
        EXPECT_EQ(DrawnBy([&](void* g) { GraphicAddPoints(g, list, 1, COLOR, nullptr, 0); }), Drawing());
        EXPECT_EQ(DrawnBy([&](void* g) { GraphicAddFoundPoints(g, list, nullptr); }), Drawing());
    }
}

TEST(Drawing_points, of_lists_without_a_valid_point_makes_an_empty_element)
{
    const auto noFloats = List32({});
    const auto noRecords = Records({});
    const auto nulls = List64({{NULL_VALUE, 0, 0}, {0, 0, NULL_VALUE}});
    for (const auto* list : {&noFloats, &noRecords, &nulls})
    {
        EXPECT_EQ(DrawnBy([&](void* g) { GraphicAddPoints(g, list->Get(), 1, COLOR, nullptr, 0); }),
                  (Drawing{Marks(1, 0, COLOR, {})}));
        EXPECT_EQ(DrawnBy([&](void* g) { GraphicAddLines(g, list->Get(), 1, COLOR, nullptr); }),
                  (Drawing{Line(1, COLOR, PLAIN, {})}));
    }
}

// --- the failed cast of lines ---------------------------------------------------------------------------------------

TEST(Drawing_lines, of_a_list_that_converts_to_nothing_reports_a_failed_cast_and_makes_an_empty_line)
{
    const auto empty = List64({});
    const auto flat = ListOfItems<zPoint64f>(zTypeOf(zPoint64f), {{1, 2}});
    const auto noList = NewGraphic();
    for (void* const list : {empty.Get(), flat.Get(), noList.Get()})
    {
        const CountedLog log;
        EXPECT_EQ(DrawnBy([&](void* g) { GraphicAddLines(g, list, 2, COLOR, nullptr); }),
                  (Drawing{Line(2, COLOR, PLAIN, {})}));
        EXPECT_EQ(CountedLog::Lines(), 1);
    }
}

TEST(Drawing_lines, of_no_list_draws_and_reports_nothing)
{
    const CountedLog log;
    EXPECT_EQ(DrawnBy([](void* g) { GraphicAddLines(g, nullptr, 2, COLOR, nullptr); }), Drawing());
    EXPECT_EQ(DrawnBy([](void* g) { GraphicAddContourLines(g, nullptr, nullptr); }), Drawing());
    EXPECT_EQ(CountedLog::Lines(), 0);
}

// --- failures -------------------------------------------------------------------------------------------------------

TEST(Drawing_without_a_graphic, raises_the_status_of_the_host)
{
    const auto list = List32({{1, 2, 3}});
    zPoint3d32f at{};
    EXPECT_EQ(RaisedFrom([] { GraphicAddPoint(nullptr, A, 1, COLOR, nullptr, 0); }),
              RaisedByDrawing(-997, "GraphicAddPoint"));
    EXPECT_EQ(RaisedFrom([&] { GraphicAddFoundPoints(nullptr, list.Get(), nullptr); }),
              RaisedByDrawing(-997, "GraphicAddPoints"));
    EXPECT_EQ(RaisedFrom([&] { GraphicAddContourLines(nullptr, list.Get(), nullptr); }),
              RaisedByDrawing(-997, "GraphicAddLines"));
    EXPECT_EQ(RaisedFrom([] { GraphicAddRay(nullptr, A, B, 1, COLOR, nullptr); }),
              RaisedByDrawing(-997, "GraphicAddRay"));
    EXPECT_EQ(RaisedFrom([&] { GraphicAddLabel(nullptr, "", &at, nullptr); }),
              RaisedByDrawing(-997, "GraphicAddLabel"));
    EXPECT_EQ(RaisedFrom([] { GraphicAddPosition(nullptr, A, TpGraphicPositionType::Result, nullptr); }),
              RaisedByDrawing(-997, "GraphicAddPosition"));
    EXPECT_EQ(RaisedFrom([] { GraphicAddArrow(nullptr, A, B, nullptr); }), RaisedByDrawing(-997, "GraphicAddArrow"));
    EXPECT_EQ(RaisedFrom([] { GraphicAddFittedLine(nullptr, A, B, nullptr); }),
              RaisedByDrawing(-997, "GraphicAddInfiniteLine"));
}
} // namespace
