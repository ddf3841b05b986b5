#include <Support/GraphicElements.h>
#include <Support/MessageChecks.h>

#include <gtest/gtest.h>
#include <limits>
#include <ostream>

namespace Support
{
static void PrintTo(const GraphicElement& kind, std::ostream* out)
{
    *out << kind.name;
}
} // namespace Support

using namespace Support;

namespace
{
class Graphic_element : public testing::TestWithParam<GraphicElement>
{
protected:
    static Ta::Object<void*> Make()
    {
        zObject element = nullptr;
        EXPECT_EQ(GetParam().make(&element, nullptr), zOK);
        return Ta::Object<void*>(element);
    }
};

template <typename Construct>
Ta::Object<void*> New(const Construct& construct)
{
    zObject element = nullptr;
    EXPECT_EQ(construct(&element, nullptr), zOK);
    return Ta::Object<void*>(element);
}
} // namespace

TEST_P(Graphic_element, Knows_its_kind)
{
    const auto element = Make();
    EXPECT_EQ(TpGraphicElement_Kind(element.Get()), GetParam().kind);
    EXPECT_EQ(xzObject_Type(element.Get()), GetParam().type);
    EXPECT_TRUE(xzCastClass_ObjectIs(element.Get(), zTypeOf(TpGraphicElement)));
}

TEST_P(Graphic_element, Gives_back_every_property)
{
    EXPECT_EQ(TextOf(Make().Get()), GetParam().made);
}

TEST_P(Graphic_element, Clone_has_every_property)
{
    const auto clone = CloneOf(Make().Get());
    EXPECT_EQ(TpGraphicElement_Kind(clone.Get()), GetParam().kind);
    EXPECT_EQ(xzObject_ReferenceCount(clone.Get()), 1);
    EXPECT_EQ(TextOf(clone.Get()), GetParam().made);
}

TEST_P(Graphic_element, Failures_leave_nothing_behind)
{
    EXPECT_GE(ExpectCleanFailures(GetParam().make), 2U);
}

TEST_P(Graphic_element, Copied_in_an_allocator_leaves_nothing_in_another)
{
    const CountingAlloc first;
    const CountingAlloc second;
    zObject clone = nullptr;
    {
        zObject element = nullptr;
        ASSERT_EQ(GetParam().make(&element, first.Get()), zOK);
        const Ta::Object<void*> owner(element);
        ASSERT_EQ(xzObject_CloneImpl(&clone, element, second.Get()), zOK);
    }
    EXPECT_EQ(first.LiveBlocks(), 0U);
    EXPECT_EQ(TextOf(clone), GetParam().made);
    EXPECT_EQ(xzObject_DestroyImpl(clone), zOK);
    EXPECT_EQ(second.LiveBlocks(), 0U);
}

INSTANTIATE_TEST_SUITE_P(, Graphic_element, testing::ValuesIn(GRAPHIC_ELEMENTS), CaseName());

TEST(TpGraphicElement, Other_objects_are_of_no_kind)
{
    const auto measure = Measure(1);
    EXPECT_EQ(TpGraphicElement_Kind(measure.Get()), TaPipe::TpGraphicKind::None);
    EXPECT_EQ(TpGraphicElement_Kind(nullptr), TaPipe::TpGraphicKind::None);
}

TEST(TpGraphicElement, Only_regions_are_regions)
{
    for (const GraphicElement& kind : GRAPHIC_ELEMENTS)
    {
        const bool isRegion =
            kind.kind == TaPipe::TpGraphicKind::Region2d || kind.kind == TaPipe::TpGraphicKind::Region3d;
        EXPECT_EQ(xzCastClass_ObjectIs(New(kind.make).Get(), zTypeOf(TpGraphicRegion)), isRegion) << kind.name;
    }
}

TEST(TpGraphicElement, New_ones_have_their_defaults)
{
    EXPECT_EQ(TextOf(New(TpGraphicRay_Construct).Get()), "ray (0, 0, 0) (0, 0, 1) 1 4294967295");
    EXPECT_EQ(TextOf(New(TpGraphicLabel_Construct).Get()), "label '' (0, 0, 0)");
    EXPECT_EQ(TextOf(New(TpGraphicPlane_Construct).Get()), "plane (0, 0, 1) 0");
    EXPECT_EQ(TextOf(New(TpGraphicRegion2d_Construct).Get()), "region2d (0, 0) (0, 0) 0");
    EXPECT_EQ(TextOf(New(TpGraphicRegion3d_Construct).Get()), "region3d (0, 0, 0) (0, 0, 0) 0");
    EXPECT_EQ(TextOf(New(TpGraphicPosition_Construct).Get()), "position 0 (0, 0, 0)");
}

TEST(TpGraphicElement, Construct_without_a_place_for_the_element_is_refused)
{
    EXPECT_EQ(TpGraphicRay_Construct(nullptr, nullptr), zERROR_MISSING);
    EXPECT_EQ(TpGraphicLabel_Construct(nullptr, nullptr), zERROR_MISSING);
    EXPECT_EQ(TpGraphicPlane_Construct(nullptr, nullptr), zERROR_MISSING);
    EXPECT_EQ(TpGraphicRegion2d_Construct(nullptr, nullptr), zERROR_MISSING);
    EXPECT_EQ(TpGraphicRegion3d_Construct(nullptr, nullptr), zERROR_MISSING);
    EXPECT_EQ(TpGraphicPosition_Construct(nullptr, nullptr), zERROR_MISSING);
    EXPECT_EQ(TpGraphicPointSet_Construct(nullptr, 1, 0, 0, nullptr, 0, nullptr), zERROR_MISSING);
    EXPECT_EQ(TpGraphicLineSet_Construct(nullptr, 1, 0, 0, 0, nullptr, 0, nullptr), zERROR_MISSING);
}

TEST(TpGraphicElement, Setters_refuse_elements_of_another_kind)
{
    for (const GraphicElement& kind : GRAPHIC_ELEMENTS)
    {
        const auto owner = New(kind.make);
        for (void* const e : {owner.Get(), static_cast<void*>(nullptr)})
        {
            const auto isOther = [e](zType type) { return !xzCastClass_ObjectIs(e, type); };
            if (isOther(zTypeOf(TpGraphicRay)))
            {
                EXPECT_EQ(TpGraphicRay_SetPosition(e, {9, 9, 9}), zERROR_PARAMETER);
                EXPECT_EQ(TpGraphicRay_SetDirection(e, {9, 9, 9}), zERROR_PARAMETER);
                EXPECT_EQ(TpGraphicRay_SetWidth(e, 9), zERROR_PARAMETER);
                EXPECT_EQ(TpGraphicRay_SetColor(e, 9), zERROR_PARAMETER);
            }
            if (isOther(zTypeOf(TpGraphicLabel)))
            {
                EXPECT_EQ(TpGraphicLabel_SetText(e, "9"), zERROR_PARAMETER);
                EXPECT_EQ(TpGraphicLabel_SetPosition(e, {9, 9, 9}), zERROR_PARAMETER);
            }
            if (isOther(zTypeOf(TpGraphicPlane)))
            {
                EXPECT_EQ(TpGraphicPlane_SetNormal(e, {9, 9, 9}), zERROR_PARAMETER);
                EXPECT_EQ(TpGraphicPlane_SetDistance(e, 9), zERROR_PARAMETER);
            }
            if (isOther(zTypeOf(TpGraphicPosition)))
            {
                EXPECT_EQ(TpGraphicPosition_SetType(e, TaPipe::TpGraphicPositionType::Reference), zERROR_PARAMETER);
                EXPECT_EQ(TpGraphicPosition_SetPosition(e, {9, 9, 9}), zERROR_PARAMETER);
            }
            if (isOther(zTypeOf(TpGraphicRegion2d)))
            {
                EXPECT_EQ(TpGraphicRegion2d_SetCenter(e, 9, 9), zERROR_PARAMETER);
                EXPECT_EQ(TpGraphicRegion2d_SetDimensions(e, 9, 9), zERROR_PARAMETER);
                EXPECT_EQ(TpGraphicRegion2d_SetYAngle(e, 9), zERROR_PARAMETER);
            }
            if (isOther(zTypeOf(TpGraphicRegion3d)))
            {
                EXPECT_EQ(TpGraphicRegion3d_SetCenter(e, 9, 9, 9), zERROR_PARAMETER);
                EXPECT_EQ(TpGraphicRegion3d_SetDimensions(e, 9, 9, 9), zERROR_PARAMETER);
                EXPECT_EQ(TpGraphicRegion3d_SetZAngle(e, 9), zERROR_PARAMETER);
            }
        }
        EXPECT_EQ(TextOf(owner.Get()), kind.made);
    }
}

TEST(TpGraphicElement, Getters_give_nothing_of_elements_of_another_kind)
{
    const auto ray = New(MakeRay);
    const auto label = New(MakeLabel);
    EXPECT_EQ(TpGraphicPointSet_Points(ray.Get()), nullptr);
    EXPECT_EQ(TpGraphicPointSet_Count(ray.Get()), 0U);
    EXPECT_EQ(TpGraphicPointSet_Color(nullptr), 0U);
    EXPECT_EQ(TpGraphicLineSet_Points(New(MakePointSet).Get()), nullptr);
    EXPECT_EQ(TpGraphicLineSet_Count(New(MakePointSet).Get()), 0U);
    EXPECT_EQ(TpGraphicLabel_Text(ray.Get()), nullptr);
    EXPECT_EQ(TpGraphicLabel_Text(nullptr), nullptr);
    EXPECT_EQ(TpGraphicRay_Width(label.Get()), 0);
    EXPECT_EQ(TpGraphicRay_Color(label.Get()), 0U);
    EXPECT_EQ(TpGraphicPlane_Distance(label.Get()), 0);
    EXPECT_EQ(TpGraphicPlane_Normal(label.Get()).z, 0);
    EXPECT_EQ(TpGraphicRegion2d_YAngle(New(MakeRegion3d).Get()), 0);
    EXPECT_EQ(TpGraphicRegion3d_ZAngle(New(MakeRegion2d).Get()), 0);
    EXPECT_EQ(TpGraphicPosition_Type(label.Get()), TaPipe::TpGraphicPositionType::Result);
}

TEST(TpGraphicElement, Null_coordinates_are_kept)
{
    const auto ray = New(TpGraphicRay_Construct);
    constexpr float lowest = std::numeric_limits<float>::lowest();
    ASSERT_EQ(TpGraphicRay_SetPosition(ray.Get(), {lowest, 1, 2}), zOK);
    EXPECT_EQ(TpGraphicRay_Position(ray.Get()).x, lowest);
    const auto position = New(TpGraphicPosition_Construct);
    ASSERT_EQ(TpGraphicPosition_SetPosition(position.Get(), {zNULL_64F, 1, 2}), zOK);
    EXPECT_EQ(TpGraphicPosition_Position(position.Get()).x, zNULL_64F);
}

TEST(TpGraphicElement, Numbers_without_a_meaning_are_kept)
{
    const auto position = New(TpGraphicPosition_Construct);
    ASSERT_EQ(TpGraphicPosition_SetType(position.Get(), static_cast<TaPipe::TpGraphicPositionType>(77)), zOK);
    EXPECT_EQ(static_cast<int>(TpGraphicPosition_Type(position.Get())), 77);
    zObject points = nullptr;
    ASSERT_EQ(TpGraphicPointSet_Construct(&points, 1, -3, 0, nullptr, 0, nullptr), zOK);
    const Ta::Object<void*> owner(points);
    EXPECT_EQ(TpGraphicPointSet_PointShape(points), -3);
}
