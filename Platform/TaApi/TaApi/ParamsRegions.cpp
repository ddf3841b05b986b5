#include <TaApi/ParamsRegions.h>

#include <array>
#include <cstddef>
#include <cstdint>

namespace Ta::Params
{
namespace
{
constexpr std::uint32_t TRANSFORM_SORT_ORDER = 9;

struct ValueSchema
{
    Value<double> BaseBoxRegion::*value;
    std::size_t axis; ///< x, y, z, and the angles about them
    const char* title;
    const char* key;
    const char* units;
};

// In the order of the members, which is that of the sort orders from 0 up.
constexpr std::array<ValueSchema, 9> VALUES = {{
    {&BaseBoxRegion::x, 0, "X", "x", "mm"},
    {&BaseBoxRegion::y, 1, "Y", "y", "mm"},
    {&BaseBoxRegion::z, 2, "Z", "z", "mm"},
    {&BaseBoxRegion::width, 0, "Width (X)", "width", "mm"},
    {&BaseBoxRegion::length, 1, "Length (Y)", "length", "mm"},
    {&BaseBoxRegion::height, 2, "Height (Z)", "height", "mm"},
    {&BaseBoxRegion::xAngle, 3, "X Angle", "xAngle", "deg"},
    {&BaseBoxRegion::yAngle, 4, "Y Angle", "yAngle", "deg"},
    {&BaseBoxRegion::zAngle, 5, "Z Angle", "zAngle", "deg"},
}};

std::vector<double> Identity4x4()
{
    return {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
}
} // namespace

BaseBoxRegion::BaseBoxRegion(const std::string& name)
    : Group(name)
{
}

BaseBoxRegion::~BaseBoxRegion() = default;

BoxRegion::BoxRegion(bool hasX, bool hasY, bool hasZ, bool hasXAngle, bool hasYAngle, bool hasZAngle, bool hasXUnits,
                     bool hasYUnits, bool hasZUnits, bool hasXAngleUnits, bool hasYAngleUnits, bool hasZAngleUnits,
                     const std::string& name)
    : BaseBoxRegion(name)
{
    const std::array<bool, 6> exists = {hasX, hasY, hasZ, hasXAngle, hasYAngle, hasZAngle};
    const std::array<bool, 6> hasUnits = {hasXUnits,      hasYUnits,      hasZUnits,
                                          hasXAngleUnits, hasYAngleUnits, hasZAngleUnits};
    std::uint32_t sortOrder = 0;
    for (const ValueSchema& schema : VALUES)
    {
        Value<double>& value = this->*schema.value;
        if (exists.at(schema.axis))
        {
            RegisterAt(schema.title, schema.key, value, sortOrder);
        }
        else
        {
            value.SetUsed(false);
        }
        if (exists.at(schema.axis) && hasUnits.at(schema.axis))
        {
            value.EnableUnits(schema.units);
        }
        ++sortOrder;
    }
}

BoxRegion::~BoxRegion() = default;

ProfileRegion::ProfileRegion()
    : BoxRegion(true, false, true, false, true, false, true, false, true, false, true, false, "ProfileRegion")
{
}

ProfileRegion::~ProfileRegion() = default;

SurfaceRegion2d::SurfaceRegion2d()
    : BoxRegion(true, true, false, false, false, true, true, true, false, false, false, true, "SurfaceRegion2d")
{
}

SurfaceRegion2d::~SurfaceRegion2d() = default;

SurfaceRegion3d::SurfaceRegion3d()
    : BoxRegion(true, true, true, false, false, true, true, true, true, false, false, true, "SurfaceRegion3d")
{
}

SurfaceRegion3d::~SurfaceRegion3d() = default;

Transform3d::Transform3d()
    : Value<std::vector<double>>(Identity4x4())
{
    EnableReadOnly(true);
    EnableExtendedType("Transform3d");
}

Transform3d::~Transform3d() = default;

TransformedBoxRegion::TransformedBoxRegion(bool hasX, bool hasY, bool hasZ, bool hasXAngle, bool hasYAngle,
                                           bool hasZAngle, bool hasXUnits, bool hasYUnits, bool hasZUnits,
                                           bool hasXAngleUnits, bool hasYAngleUnits, bool hasZAngleUnits)
    : BoxRegion(hasX, hasY, hasZ, hasXAngle, hasYAngle, hasZAngle, hasXUnits, hasYUnits, hasZUnits, hasXAngleUnits,
                hasYAngleUnits, hasZAngleUnits, "TransformedBoxRegion")
{
    RegisterAt("Transform Matrix", "transformMatrix", transformMatrix, TRANSFORM_SORT_ORDER);
}

TransformedBoxRegion::~TransformedBoxRegion() = default;
} // namespace Ta::Params
