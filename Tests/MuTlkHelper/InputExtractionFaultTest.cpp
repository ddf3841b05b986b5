#include <MuTlkHelper/InputUtils.h>

#include <Support/Builders.h>
#include <Support/FaultWalk.h>
#include <Support/Lists.h>
#include <Support/Raised.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <set>
#include <string>
#include <vector>

// What the members do when a call to the base library fails.

namespace
{
using namespace Mu::TlkHelper;
using namespace Support;
using Mu::Vision::Region3d;
using Mu::Vision::RegionXZ;

constexpr zStatus INJECTED = -4242;
const Region3d<double> BOX{0, 0, 0, 1e3, 1e3, 1e3, 0, 0, 0};
const Region3d<double> TURNED_BOX{0, 0, 0, 1e3, 1e3, 1e3, 0, 0, 30};
const RegionXZ<double> PLANE{0, 0, 1e3, 1e3, 0};

const Ta::Object<void*>& Heights()
{
    static const Ta::Object<void*> surface = Surface({{1, 2}, {3, 4}}).Intensity({{1, 2}, {3, 4}});
    return surface;
}

const Ta::Object<void*>& Triples()
{
    static const Ta::Object<void*> surface = PointSurface({{{1, 2, 3}, {4, 5, 6}}}).Intensity({{1, 2}});
    return surface;
}

const Ta::Object<void*>& Line()
{
    static const Ta::Object<void*> profile = Profile({1, 2, 3}).Intensity({1, 2, 3});
    return profile;
}

const Ta::Object<void*>& Pairs()
{
    static const Ta::Object<void*> profile = PointProfile({{1, 2}, {3, 4}}).Intensity({1, 2});
    return profile;
}

const Ta::Object<void*>& Grid()
{
    static const Ta::Object<void*> grid = NewGrid<z16s>(zTypeOf(z16s), 2, 2, {1, 2, 3, 4});
    return grid;
}

const Ta::Object<void*>& Mask()
{
    static const Ta::Object<void*> mask = NewGrid<z8u>(zTypeOf(z8u), 2, 2, {1, 0, 0, 1});
    return mask;
}

/// What a member finds and leaves: the outputs that the test owns.
struct Outputs
{
    void* first = nullptr;
    void* second = nullptr;

    void Release()
    {
        for (void** output : {&first, &second})
        {
            MU_CHECK(xzObject_DestroyImpl(std::exchange(*output, nullptr)));
        }
    }
};

struct FaultCase
{
    const char* name;
    zType listType; ///< of the lists that are there before, null for none
    std::function<void(Outputs&, zAlloc)> get;
    std::set<std::string> raises; ///< "operation in function" of every failure there is, but those of releases
};

RegionXZ<double> planes[] = {PLANE};
double angles[] = {30};

std::vector<FaultCase> PointCases()
{
    const auto box = [](const Ta::Object<void*>& (*message)(), const Region3d<double>& region) {
        return [=](Outputs& o, zAlloc a) { GetPointsFromRegion(message().Get(), region, &o.first, a); };
    };
    const auto appends = [](const std::string& function) {
        return std::set{"zArrayList_Reserve in " + function, "zAlloc_Get in " + function,
                        "zArrayList_CountUp in " + function};
    };
    return {
        {"a new list",
         nullptr,
         box(Heights, BOX),
         {"zArrayList_Construct in GetPointsFromRegion", "zAlloc_Get in GetPointsFromRegion",
          "zArrayList_CountUp in GetPointsFromRegionResampled"}},
        {"a list of another type",
         zTypeOf(z16s),
         box(Heights, BOX),
         {"xzObject_DestroyImpl in GetPointsFromRegion", "zArrayList_Construct in GetPointsFromRegion",
          "zAlloc_Get in GetPointsFromRegion", "zAlloc_Free in ",
          "zArrayList_CountUp in GetPointsFromRegionResampled"}},
        {"heights", zTypeOf(zPoint3d64f), box(Heights, BOX), appends("GetPointsFromRegionResampled")},
        {"triples", zTypeOf(zPoint3d64f), box(Triples, BOX), appends("GetPointsFromRegionUnresampled")},
        {"turned heights", zTypeOf(zPoint3d64f), box(Heights, TURNED_BOX), appends("GetPointsFromRegionWithAngle")},
        {"turned triples", zTypeOf(zPoint3d64f), box(Triples, TURNED_BOX), appends("GetPointsFromRegionWithAngle")},
        {"all", zTypeOf(zPoint3d64f), [](Outputs& o, zAlloc) { GetAllPoints(Heights().Get(), &o.first); },
         appends("GetAllPoints")},
        {"intensities", zTypeOf(z8u),
         [](Outputs& o, zAlloc a) { GetIntensitiesFromRegion(Heights().Get(), BOX, &o.first, a); },
         appends("GetIntensitiesFromRegionResampled")},
        {"intensities of triples", zTypeOf(z8u),
         [](Outputs& o, zAlloc a) { GetIntensitiesFromRegion(Triples().Get(), BOX, &o.first, a); },
         appends("GetIntensitiesFromRegionUnresampled")},
        {"line", zTypeOf(zPoint64f),
         [](Outputs& o, zAlloc a) { GetPointsFromRegionXZ(Line().Get(), PLANE, &o.first, a); },
         appends("GetPointsFromRegionXZResampled")},
        {"pairs", zTypeOf(zPoint64f),
         [](Outputs& o, zAlloc a) { GetPointsFromRegionXZ(Pairs().Get(), PLANE, &o.first, a); },
         appends("GetPointsFromRegionXZUnresampled")},
        {"all of a line", zTypeOf(zPoint64f),
         [](Outputs& o, zAlloc a) { GetAllProfilePoints(Line().Get(), &o.first, a); }, appends("GetAllProfilePoints")},
        {"regions", zTypeOf(zPoint64f),
         [](Outputs& o, zAlloc a) { GetProfilePointsFromRegions(Pairs().Get(), planes, 1, &o.first, a); },
         appends("GetProfilePointsFromRegions")},
        {"turned regions",
         zTypeOf(zPoint64f),
         [](Outputs& o, zAlloc a) {
             GetProfilePointsFromRegionsWithAngle(Line().Get(), planes, angles, 1, &o.first, a);
         },
         {"zM3dTransform2d_Identity in GetProfilePointsFromRegionsWithAngle",
          "zM3dTransform2d_Translate in GetProfilePointsFromRegionsWithAngle",
          "zM3dTransform2d_Rotate in GetProfilePointsFromRegionsWithAngle",
          "zM3dTransform2d_Apply in GetProfilePointsFromRegionsWithAngle",
          "zArrayList_Reserve in GetProfilePointsFromRegionsWithAngle",
          "zAlloc_Get in GetProfilePointsFromRegionsWithAngle", "zAlloc_Free in ",
          "zArrayList_CountUp in GetProfilePointsFromRegionsWithAngle"}},
    };
}

std::vector<FaultCase> PairedCases()
{
    const auto paired = [](const std::string& outer, const std::string& inner) {
        return std::set{"xzObject_DestroyImpl in " + outer, "zArrayList_Construct in " + outer,
                        "zAlloc_Get in " + outer, std::string("zAlloc_Free in "), "zArrayList_CountUp in " + inner};
    };
    const std::string region = "GetPointsAndIntensitiesFromRegionXZ";
    const std::string mask = "GetPointAndIntensityArrayFromRegionXZ";
    auto all = paired("GetAllProfilePointsAndIntensity", "GetAllProfilePointsAndIntensity");
    all.insert("zArrayList_Reserve in GetAllProfilePointsAndIntensity");
    return {
        {"line and intensity", zTypeOf(zPoint64f),
         [](Outputs& o, zAlloc a) { GetPointsAndIntensitiesFromRegionXZ(Line().Get(), PLANE, &o.first, &o.second, a); },
         paired(region, region + "Resampled")},
        {"pairs and intensity", zTypeOf(zPoint64f),
         [](Outputs& o, zAlloc a) {
             GetPointsAndIntensitiesFromRegionXZ(Pairs().Get(), PLANE, &o.first, &o.second, a);
         },
         paired(region, region + "Unresampled")},
        {"all and intensity", zTypeOf(zPoint64f),
         [](Outputs& o, zAlloc a) { GetAllProfilePointsAndIntensity(Line().Get(), &o.first, &o.second, a); }, all},
        {"mask",
         nullptr,
         [](Outputs& o, zAlloc a) { GetPointAndIntensityArrayFromRegionXZ(Line().Get(), {}, &o.first, &o.second, a); },
         {"xzObject_CloneImpl in " + mask, "zAlloc_Get in " + mask, "Array1FillMin in " + mask}},
        {"mask without intensity",
         nullptr,
         [](Outputs& o, zAlloc a) { GetPointArrayFromRegionXZ(Line().Get(), {}, &o.first, a); },
         {"xzObject_CloneImpl in GetPointArrayFromRegionXZ", "zAlloc_Get in GetPointArrayFromRegionXZ",
          "Array1FillMin in GetPointArrayFromRegionXZ"}},
        {"cloud",
         nullptr,
         [](Outputs& o, zAlloc a) {
             Ta::Object<void*> array;
             GetAllPointsPcd(Heights().Get(), array, a);
             o.first = array.Detach();
         },
         {"zArray1_Construct in GetAllPointsPcd", "zAlloc_Get in GetAllPointsPcd"}},
    };
}

const Mu::Vision::AnnularSector3d<double> RING{0, 100, 0, 360, {0, 0, 0}};
Mu::Vision::RefFrame identityFrame;

// Two handles that a member fills, as outputs.
template <typename Get>
void ThroughHandles(Outputs& outputs, const Get& get)
{
    Ta::Object<void*> first(std::exchange(outputs.first, nullptr));
    Ta::Object<void*> second(std::exchange(outputs.second, nullptr));
    get(first, second);
    outputs.first = first.Detach();
    outputs.second = second.Detach();
}

std::vector<FaultCase> CroppingCases()
{
    const auto kept = [](const std::string& function) {
        return std::set{"zArrayList_Reserve in " + function, "zAlloc_Get in " + function,
                        "zArrayList_CountUp in " + function};
    };
    const auto made = [](const std::string& function, const std::string& construct) {
        return std::set{std::string("xzObject_DestroyImpl in Ta::Object<void *>::Reset"), construct + " in " + function,
                        "zAlloc_Get in " + function};
    };
    const auto rebuilt = [](const std::string& function) {
        return std::set{"xzObject_DestroyImpl in " + function, "zArrayList_Construct in " + function,
                        "zAlloc_Get in " + function, "zArrayList_CountUp in " + function};
    };
    auto sector = rebuilt("GetPointsInAnnularSector");
    sector.insert({"zArray1_Construct in GetPointsInAnnularSector", "xzObject_DestroyImpl in "});
    auto extract = made("SurfaceExtractRegion", "zArray2_Construct");
    extract.insert("xzObject_ShareImpl in Ta::Object<void *>::Reset");
    extract.insert("xzObject_DestroyImpl in ");
    return {
        {"seen points", zTypeOf(zPoint3d64f),
         [](Outputs& o, zAlloc a) {
             GetTransformedPointsFromRegion(Heights().Get(), BOX, &identityFrame, &o.first, a);
         },
         kept("GetTransformedPointsFromRegion")},
        {"seen points, element by element", zTypeOf(zPoint3d64f),
         [](Outputs& o, zAlloc a) {
             GetTransformedPointsFromRegion(Triples().Get(), BOX, &identityFrame, &o.first, a);
         },
         kept("GetTransformedPointsFromRegion")},
        {"seen points in another list", zTypeOf(z16s),
         [](Outputs& o, zAlloc a) {
             GetTransformedPointsFromRegion(Heights().Get(), BOX, &identityFrame, &o.first, a);
         },
         rebuilt("GetTransformedPointsFromRegion")},
        {"seen intensities", zTypeOf(z8u),
         [](Outputs& o, zAlloc a) {
             GetTransformedIntensityFromRegion(Heights().Get(), BOX, &identityFrame, &o.first, a);
         },
         kept("GetTransformedIntensityFromRegion")},
        {"seen intensities, element by element", zTypeOf(z8u),
         [](Outputs& o, zAlloc a) {
             GetTransformedIntensityFromRegion(Triples().Get(), BOX, &identityFrame, &o.first, a);
         },
         kept("GetTransformedIntensityFromRegion")},
        {"seen intensities in another list", zTypeOf(zPoint3d64f),
         [](Outputs& o, zAlloc a) {
             GetTransformedIntensityFromRegion(Heights().Get(), BOX, &identityFrame, &o.first, a);
         },
         rebuilt("GetTransformedIntensityFromRegion")},
        {"points handed over", zTypeOf(zPoint3d64f),
         [](Outputs& o, zAlloc a) { GetTransformedPointsFromRegion(Heights().Get(), BOX, nullptr, &o.first, a); },
         kept("GetPointsFromRegionResampled")},
        {"intensities handed over", zTypeOf(z8u),
         [](Outputs& o, zAlloc a) { GetTransformedIntensityFromRegion(Heights().Get(), BOX, nullptr, &o.first, a); },
         kept("GetIntensitiesFromRegionResampled")},
        {"sector", zTypeOf(zPoint3d64f),
         [](Outputs& o, zAlloc) { GetPointsInAnnularSector(Heights().Get(), RING, &o.first); }, sector},
        {"cut out", zTypeOf(z16s),
         [](Outputs& o, zAlloc) {
             ThroughHandles(o, [](Ta::Object<void*>& heights, Ta::Object<void*>& grey) {
                 SurfaceExtractRegion(Heights().Get(), BOX, heights, grey, nullptr);
             });
         },
         extract},
        {"crop",
         nullptr,
         [](Outputs& o, zAlloc a) {
             o.first = CropRoi<short>(Grid().Get(), {0, 0, 2, 2}, Mask().Get(), a).Detach();
         },
         {"zArray2_Construct in CropRoi", "zAlloc_Get in CropRoi"}},
        {"line made anew", zTypeOf(z16s),
         [](Outputs& o, zAlloc a) {
             ThroughHandles(o, [a](Ta::Object<void*>& object, Ta::Object<void*>&) {
                 ReallocateArray1(object, zTypeOf(z16s), 2, a);
             });
         },
         made("ReallocateArray1", "zArray1_Construct")},
        {"grid made anew", zTypeOf(z16s),
         [](Outputs& o, zAlloc a) {
             ThroughHandles(o, [a](Ta::Object<void*>& object, Ta::Object<void*>&) {
                 ReallocateArray2(object, zTypeOf(z16s), 2, 3, a);
             });
         },
         made("ReallocateArray2", "zArray2_Construct")},
    };
}

constexpr std::size_t FORMER = 3;

// Lists of three items without room for more, so that every step of growing them is taken.
Outputs FormerOutputs(zType listType, zAlloc alloc)
{
    Outputs outputs;
    if (listType != nullptr)
    {
        const z64f item[4] = {1, 2, 3, 4};
        outputs.first = NewList(listType, FORMER, alloc);
        outputs.second = NewList(zTypeOf(z8u), FORMER, alloc);
        for (std::size_t i = 0; i < FORMER; ++i)
        {
            MU_CHECK(zArrayList_Add(outputs.first, item));
            MU_CHECK(zArrayList_Add(outputs.second, item));
        }
    }
    return outputs;
}

std::string Short(const std::string& qualified)
{
    const std::string prefix = "Mu::TlkHelper::";
    return qualified.starts_with(prefix) ? qualified.substr(prefix.size()) : qualified;
}

// Handles raise under their own name.
Raised FailureIn(const std::string& function)
{
    return function == "Ta::Object<void *>::Reset" ? Raised{INJECTED, function, "Platform/TaApi/TaApi/Object", ""}
                                                   : InputFailure(INJECTED, Short(function));
}

bool RebuildsLists(const FaultCase& c)
{
    return std::any_of(c.raises.begin(), c.raises.end(),
                       [](const std::string& step) { return step.starts_with("xzObject_DestroyImpl"); });
}

void WalkCase(const FaultCase& c)
{
    SCOPED_TRACE(c.name);
    const CountingAlloc alloc;
    std::set<std::string> met;
    const bool isKept = c.listType != nullptr && !RebuildsLists(c);
    for (std::size_t n = 1; n <= MOST_STEPS; ++n)
    {
        Outputs outputs = FormerOutputs(c.listType, alloc.Get());
        void* const former = outputs.first;
        Raised raised;
        {
            const ArmedFault fault(n, INJECTED);
            raised = RaisedBy([&] { c.get(outputs, alloc.Get()); });
        }
        const std::string operation = ArmedFault::Failed();
        EXPECT_TRUE(!isKept || (outputs.first == former && zArrayList_Count(former) >= FORMER))
            << operation << ": what was there stays";
        outputs.Release();
        EXPECT_EQ(alloc.LiveBlocks(), 0U) << operation << ": left behind";
        if (operation.empty())
        {
            EXPECT_EQ(raised, Raised());
            break;
        }
        met.insert(operation + " in " + Short(raised.function));
        EXPECT_TRUE(raised == FailureIn(raised.function) || (raised == Raised() && IsRelease(operation)))
            << operation << ": " << testing::PrintToString(raised);
    }
    std::set<std::string> expected = c.raises;
    met.erase("zAlloc_Free in "); // the memory is freed all the same
    expected.erase("zAlloc_Free in ");
    EXPECT_EQ(met, expected);
}

class Extraction : public testing::Test
{
protected:
    // Made before any call is made to fail.
    static void SetUpTestSuite()
    {
        for (const auto message : {Heights, Triples, Line, Pairs, Grid, Mask})
        {
            ASSERT_TRUE(message());
        }
    }
};

TEST_F(Extraction, raises_the_status_of_every_failing_base_call_at_its_place)
{
    for (const FaultCase& c : PointCases())
    {
        WalkCase(c);
    }
    for (const FaultCase& c : PairedCases())
    {
        WalkCase(c);
    }
    for (const FaultCase& c : CroppingCases())
    {
        WalkCase(c);
    }
}

TEST_F(Extraction, raises_what_a_failing_allocator_gives)
{
    for (const auto& cases : {PointCases(), PairedCases(), CroppingCases()})
    {
        for (const FaultCase& c : cases)
        {
            SCOPED_TRACE(c.name);
            const auto run = [&c](zAlloc alloc) {
                Outputs outputs;
                const Raised raised = RaisedBy([&] { c.get(outputs, alloc); });
                outputs.Release();
                return raised;
            };
            WalkAllocations(run, [](const Raised& raised) {
                EXPECT_EQ(raised, InputFailure(zERROR_MEMORY, Short(raised.function)));
            });
        }
    }
}

TEST_F(Extraction, keeps_the_points_that_were_added_before_a_failure)
{
    constexpr std::size_t ADDED = 200;
    constexpr std::size_t STEPS_BEFORE = 3; // that make the transform
    const auto profile = Profile(std::vector<z16s>(1000, 1));
    Handle list(NewList(zTypeOf(zPoint64f), 1000));
    RegionXZ<double> everything{0, 0, 1e4, 1e4, 0};
    const ArmedFault fault(STEPS_BEFORE + ADDED + 1, INJECTED);
    const Raised raised =
        RaisedBy([&] { GetProfilePointsFromRegionsWithAngle(profile.Get(), &everything, angles, 1, list.Out()); });
    EXPECT_EQ(ArmedFault::Failed(), "zM3dTransform2d_Apply");
    EXPECT_EQ(raised, InputFailure(INJECTED, "GetProfilePointsFromRegionsWithAngle"));
    EXPECT_EQ(zArrayList_Count(list.Get()), ADDED);
}

TEST_F(Extraction, of_a_pixel_raises_the_status_of_every_failing_base_call)
{
    std::set<std::string> met;
    const auto run = [] {
        return RaisedBy([] {
            InputData data;
            SetInputData(Heights().Get(), &data);
            constexpr zM3dTransform3d identity = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0};
            zPoint3d64f point;
            GetTransformedPointFromPixel(data, identity, 1, 1, &point, nullptr, nullptr, 0);
        });
    };
    WalkFaults(INJECTED, run, [&met](const std::string& operation, const Raised& raised) {
        EXPECT_TRUE(raised.status == INJECTED || IsRelease(operation));
        met.insert(operation + " in " + raised.function);
    });
    EXPECT_EQ(met, (std::set<std::string>{"xzObject_ShareImpl in Ta::Object<void *>::Reset", "xzObject_DestroyImpl in ",
                                          "zM3dTransform3d_Apply in Mu::TlkHelper::GetTransformedPointFromPixel"}));
}
} // namespace
