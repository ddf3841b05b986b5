#pragma once

#include "RegionFields.h"
#include "ToolFixture.h"

#include <MuVision/Anchor.h>

#include <algorithm>
#include <array>
#include <span>
#include <string>
#include <vector>

namespace Support
{
using Mu::Tools::AnchorAxis;
using Mu::Vision::Anchor;

inline constexpr std::array<double Anchor::*, 6> ANCHOR_FIELDS = {&Anchor::x,      &Anchor::y,      &Anchor::z,
                                                                  &Anchor::xAngle, &Anchor::yAngle, &Anchor::zAngle};

inline const std::vector<AnchorAxis> ALL_ANCHOR_AXES = {AnchorAxis::X,      AnchorAxis::Y,      AnchorAxis::Z,
                                                        AnchorAxis::XAngle, AnchorAxis::YAngle, AnchorAxis::ZAngle};

inline std::array<double, 6> Fields(const Anchor& a)
{
    return {a.x, a.y, a.z, a.xAngle, a.yAngle, a.zAngle};
}

/// Routes the inputs of these axes; an empty source takes the routes away.
inline void RouteAnchors(ProbeTool& tool, const std::vector<AnchorAxis>& axes, const std::string& source)
{
    const std::vector<Mu::Tools::AnchorInput> records = Access::AnchorInputs(tool);
    for (const Mu::Tools::AnchorInput& record : records)
    {
        if (std::find(axes.begin(), axes.end(), record.axis) != axes.end())
        {
            tool.InputAt(record.inputIndex).Route({0, source});
        }
    }
}

/// One execution: `data` on input 0 unless it is null, and on each routed anchor input its value of `anchor`; a null
/// value comes as a null message.
inline void ScanOf(ProbeTool& tool, const Ta::Object<void*>& data, const Anchor& anchor)
{
    std::vector<Ta::Object<void*>> messages;
    std::vector<std::size_t> indices;
    if (data)
    {
        messages.push_back(data);
        indices.push_back(0);
    }
    for (const Mu::Tools::AnchorInput& record : Access::AnchorInputs(tool))
    {
        if (record.active)
        {
            const double value = anchor.*ANCHOR_FIELDS[static_cast<std::size_t>(record.axis)];
            messages.push_back(value == zNULL_64F ? Ta::Object<void*>(NullMessage())
                                                  : Ta::Object<void*>(Measure(value)));
            indices.push_back(record.inputIndex);
        }
    }
    std::vector<void*> handles;
    for (const Ta::Object<void*>& message : messages)
    {
        handles.push_back(message.Get());
    }
    std::vector<TaPipe::MessageInput> inputs;
    for (std::size_t i = 0; i < handles.size(); ++i)
    {
        inputs.push_back({indices[i], std::span<void* const>(&handles[i], 1)});
    }
    ASSERT_TRUE(tool.ProcessInputSet(inputs.data(), inputs.size()));
}
} // namespace Support
