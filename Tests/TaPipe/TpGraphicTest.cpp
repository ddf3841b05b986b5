#include <Support/GraphicElements.h>
#include <Support/MessageChecks.h>

#include <gtest/gtest.h>

using namespace Support;

namespace
{
Ta::Object<void*> NewGraphic(zAlloc alloc = nullptr)
{
    TpGraphic graphic = nullptr;
    EXPECT_EQ(TpGraphic_Construct(&graphic, alloc), zOK);
    return Ta::Object<void*>(graphic);
}

Ta::Object<void*> New(const GraphicElement& kind, zAlloc alloc = nullptr)
{
    zObject element = nullptr;
    EXPECT_EQ(kind.make(&element, alloc), zOK);
    return Ta::Object<void*>(element);
}

/// Makes and adds an element; whatever fails leaves no element to the caller.
zStatus MakeAndAdd(zObject graphic, const GraphicElement& kind, zAlloc alloc)
{
    zObject element = nullptr;
    zStatus status = kind.make(&element, alloc);
    status = status == zOK ? kind.add(graphic, element) : status;
    if (status != zOK)
    {
        static_cast<void>(xzObject_DestroyImpl(element));
    }
    return status;
}

zStatus MakeGraphicOfAllKinds(zObject* graphic, zAlloc alloc)
{
    zTRY(TpGraphic_Construct(graphic, alloc));
    for (const GraphicElement& kind : GRAPHIC_ELEMENTS)
    {
        zTRY(MakeAndAdd(*graphic, kind, alloc));
    }
    return zOK;
}

std::vector<std::string> TextsOf(zObject graphic)
{
    std::vector<std::string> texts;
    for (std::size_t i = 0; i < TpGraphic_Count(graphic); ++i)
    {
        texts.push_back(TextOf(TpGraphic_At(graphic, i)));
    }
    return texts;
}

std::vector<std::string> TextsOfAllKinds()
{
    std::vector<std::string> texts;
    for (const GraphicElement& kind : GRAPHIC_ELEMENTS)
    {
        texts.emplace_back(kind.made);
    }
    return texts;
}
} // namespace

TEST(TpGraphic, New_one_is_empty)
{
    const auto graphic = NewGraphic();
    EXPECT_EQ(xzObject_Type(graphic.Get()), zTypeOf(TpGraphic));
    EXPECT_EQ(TpGraphic_Count(graphic.Get()), 0U);
    EXPECT_EQ(TpGraphic_At(graphic.Get(), 0), nullptr);
    EXPECT_EQ(TpGraphic_Construct(nullptr, nullptr), zERROR_MISSING);
}

TEST(TpGraphic, Elements_are_read_in_the_order_of_adding)
{
    zObject raw = nullptr;
    ASSERT_EQ(MakeGraphicOfAllKinds(&raw, nullptr), zOK);
    const Ta::Object<void*> graphic(raw);
    EXPECT_EQ(TextsOf(raw), TextsOfAllKinds());
    EXPECT_EQ(TpGraphic_At(raw, GRAPHIC_ELEMENTS.size()), nullptr);
}

TEST(TpGraphic, Adding_takes_over_one_reference)
{
    for (const GraphicElement& kind : GRAPHIC_ELEMENTS)
    {
        const auto element = New(kind);
        {
            const auto graphic = NewGraphic();
            ASSERT_EQ(xzObject_ShareImpl(element.Get()), zOK);
            ASSERT_EQ(kind.add(graphic.Get(), element.Get()), zOK) << kind.name;
            EXPECT_EQ(TpGraphic_At(graphic.Get(), 0), element.Get());
            EXPECT_EQ(xzObject_ReferenceCount(element.Get()), 2);
        }
        EXPECT_EQ(xzObject_ReferenceCount(element.Get()), 1) << kind.name;
    }
}

TEST(TpGraphic, Element_of_another_kind_is_refused_and_stays_the_callers)
{
    const auto graphic = NewGraphic();
    for (const GraphicElement& adder : GRAPHIC_ELEMENTS)
    {
        for (const GraphicElement& kind : GRAPHIC_ELEMENTS)
        {
            if (adder.add != kind.add)
            {
                const auto element = New(kind);
                EXPECT_EQ(adder.add(graphic.Get(), element.Get()), zERROR_PARAMETER) << adder.name << " " << kind.name;
                EXPECT_EQ(xzObject_ReferenceCount(element.Get()), 1);
            }
        }
        EXPECT_EQ(adder.add(graphic.Get(), nullptr), zERROR_MISSING);
        EXPECT_EQ(adder.add(graphic.Get(), graphic.Get()), zERROR_PARAMETER);
    }
    EXPECT_EQ(TpGraphic_Count(graphic.Get()), 0U);
}

TEST(TpGraphic, Other_handles_are_refused)
{
    for (const GraphicElement& kind : GRAPHIC_ELEMENTS)
    {
        const auto element = New(kind);
        for (void* const handle : {element.Get(), static_cast<void*>(nullptr)})
        {
            EXPECT_EQ(kind.add(handle, element.Get()), zERROR_PARAMETER);
            EXPECT_EQ(TpGraphic_Count(handle), 0U);
            EXPECT_EQ(TpGraphic_At(handle, 0), nullptr);
        }
        EXPECT_EQ(xzObject_ReferenceCount(element.Get()), 1);
    }
}

TEST(TpGraphic, Failing_add_leaves_the_graphic_with_the_elements_that_it_had)
{
    zObject raw = nullptr;
    ASSERT_EQ(MakeGraphicOfAllKinds(&raw, nullptr), zOK);
    const Ta::Object<void*> graphic(raw);
    for (const GraphicElement& kind : GRAPHIC_ELEMENTS)
    {
        const auto element = New(kind);
        const ArmedFault fault(1, -66);
        EXPECT_EQ(kind.add(raw, element.Get()), -66) << kind.name;
        EXPECT_EQ(xzObject_ReferenceCount(element.Get()), 1);
    }
    EXPECT_EQ(TextsOf(raw), TextsOfAllKinds());
}

TEST(TpGraphic, Graphic_stays_as_it_was_if_it_cannot_grow)
{
    for (const GraphicElement& kind : GRAPHIC_ELEMENTS)
    {
        SCOPED_TRACE(kind.name);
        const CountingAlloc alloc;
        {
            const auto graphic = NewGraphic(alloc.Get());
            const auto element = New(kind);
            alloc.FailAt(1);
            EXPECT_EQ(kind.add(graphic.Get(), element.Get()), zERROR_MEMORY);
            EXPECT_EQ(TpGraphic_Count(graphic.Get()), 0U);
            EXPECT_EQ(xzObject_ReferenceCount(element.Get()), 1);
        }
        EXPECT_EQ(alloc.LiveBlocks(), 0U);
    }
}

TEST(TpGraphic, Grows_to_thousands_of_elements)
{
    const auto graphic = NewGraphic();
    for (std::size_t i = 0; i < 5000; ++i)
    {
        ASSERT_EQ(MakeAndAdd(graphic.Get(), GRAPHIC_ELEMENTS[i % GRAPHIC_ELEMENTS.size()], nullptr), zOK);
    }
    ASSERT_EQ(TpGraphic_Count(graphic.Get()), 5000U);
    for (std::size_t i = 0; i < 5000; ++i)
    {
        ASSERT_EQ(TextOf(TpGraphic_At(graphic.Get(), i)), GRAPHIC_ELEMENTS[i % GRAPHIC_ELEMENTS.size()].made) << i;
    }
}

TEST(TpGraphic, Clone_has_copies_of_all_elements)
{
    zObject raw = nullptr;
    ASSERT_EQ(MakeGraphicOfAllKinds(&raw, nullptr), zOK);
    const Ta::Object<void*> graphic(raw);
    const auto clone = CloneOf(raw);
    ASSERT_EQ(MakeAndAdd(raw, GRAPHIC_ELEMENTS.front(), nullptr), zOK);
    EXPECT_EQ(TextsOf(clone.Get()), TextsOfAllKinds());
    for (std::size_t i = 0; i < TpGraphic_Count(clone.Get()); ++i)
    {
        EXPECT_NE(TpGraphic_At(clone.Get(), i), TpGraphic_At(raw, i));
    }
}

TEST(TpGraphic, Travels_in_a_rendering_message)
{
    zObject raw = nullptr;
    ASSERT_EQ(MakeGraphicOfAllKinds(&raw, nullptr), zOK);
    const auto msg = Rendering(Ta::Object<void*>(raw));
    EXPECT_EQ(xzObject_ReferenceCount(raw), 1);
    EXPECT_EQ(TextsOf(TvRenderingMsg_Rendering(msg.Get())), TextsOfAllKinds());
    EXPECT_EQ(TextsOf(TvRenderingMsg_Rendering(CloneOf(msg.Get()).Get())), TextsOfAllKinds());
}

TEST(TpGraphic, Failures_leave_nothing_behind)
{
    // The graphic, its list and the list's items; sets of points take three blocks, a label three, the rest one; and as
    // many in the clone.
    EXPECT_EQ(ExpectCleanFailures(MakeGraphicOfAllKinds), 2U * (3 + 2 * 3 + 3 + 5));
}
