#pragma once

#include <cstddef>
#include <string>

namespace Mu::TlkHelper
{
/// Which anchors a tool has; the axes of rotation come with the angles asked for.
enum class AnchorType : int
{
    Profile = 0, ///< x, z; y angle
    Surface = 1, ///< x, y, z; z angle
    Box = 2,     ///< x, y, z; x angle, y angle, z angle
    Image = 3,   ///< x, y; z angle
};
} // namespace Mu::TlkHelper

namespace Mu::Tools
{
/// The six values of an anchor.
enum class AnchorAxis : int
{
    X = 0,
    Y = 1,
    Z = 2,
    XAngle = 3,
    YAngle = 4,
    ZAngle = 5,
};

/// An input of a tool that carries one value of its anchor.
struct AnchorInput
{
    AnchorAxis axis = AnchorAxis::X;
    std::string id;
    std::string displayName;
    std::size_t inputIndex = static_cast<std::size_t>(-1); ///< the index of the tool's input
    bool active = false;                                   ///< whether something was routed to it when last heard of
    std::string sourceId;                                  ///< what was routed to it when last heard of
};
} // namespace Mu::Tools
