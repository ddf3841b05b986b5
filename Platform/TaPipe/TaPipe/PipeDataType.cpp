#include <TaPipe/PipeDataType.h>

#include <algorithm>
#include <array>

namespace TaPipe
{
namespace
{
struct NamedType
{
    PipeDataType type;
    const char* name;
};

constexpr std::array<NamedType, 13> NAMES = {{
    {PipeDataType::None, "none"},
    {PipeDataType::UniformProfile, "uniform profile"},
    {PipeDataType::PointProfile, "point profile"},
    {PipeDataType::UniformSurface, "uniform surface"},
    {PipeDataType::PointSurface, "point surface"},
    {PipeDataType::Image, "image"},
    {PipeDataType::Measurement, "measurement"},
    {PipeDataType::Rendering, "rendering"},
    {PipeDataType::PointFeature, "point feature"},
    {PipeDataType::LineFeature, "line feature"},
    {PipeDataType::PlaneFeature, "plane feature"},
    {PipeDataType::CircleFeature, "circle feature"},
    {PipeDataType::Generic, "generic"},
}};
} // namespace

const char* PipeDataTypeName(PipeDataType type)
{
    const auto* const found = std::ranges::find_if(NAMES, [type](const auto& n) { return n.type == type; });
    return found == NAMES.end() ? "unknown" : found->name;
}
} // namespace TaPipe
