#pragma once

#include <TaPipe/ITool.h>
#include <TaVision/TaVision.h>

#include <algorithm>
#include <string>
#include <vector>

namespace Support
{
/// One delivery by a tool: a message, or an array of them.
struct Delivery
{
    std::string output;
    bool isArray = false;
    std::vector<Ta::Object<void*>> messages;
    int sendKind = 0;

    [[nodiscard]] void* Message() const
    {
        return messages.empty() ? nullptr : messages.front().Get();
    }

    [[nodiscard]] bool IsNullMessage() const
    {
        return xzCastClass_ObjectIs(Message(), zTypeOf(TvNullMsg));
    }

    [[nodiscard]] bool IsMeasurement() const
    {
        return xzCastClass_ObjectIs(Message(), zTypeOf(TvMeasureMsg));
    }
};

/// The host's side of the conversation: it keeps what leaves the tools, in order.
class RecordingHost final : public TaPipe::IToolHost, public TaPipe::IOutputReceiver
{
public:
    virtual ~RecordingHost() = default;

    TaPipe::IOutputReceiver& OutputReceiver() override
    {
        return *this;
    }

    void OnMessage(TaPipe::ITool& /*tool*/, const TaPipe::ToolOutputInfo& output, const Ta::Object<void*>& message,
                   int sendKind) override
    {
        deliveries.push_back({output.Id(), false, {message}, sendKind});
    }

    void OnArray(TaPipe::ITool& /*tool*/, const TaPipe::ToolOutputInfo& output,
                 const std::vector<Ta::Object<void*>>& messages) override
    {
        deliveries.push_back({output.Id(), true, messages, 1});
    }

    /// What came on one output, in order.
    [[nodiscard]] std::vector<Delivery> On(const std::string& output) const
    {
        std::vector<Delivery> found;
        std::copy_if(deliveries.begin(), deliveries.end(), std::back_inserter(found),
                     [&output](const Delivery& d) { return d.output == output; });
        return found;
    }

    /// The id of its output for each null message, sorted.
    [[nodiscard]] std::vector<std::string> NullOutputs() const
    {
        std::vector<std::string> ids;
        for (const Delivery& delivery : deliveries)
        {
            if (delivery.IsNullMessage())
            {
                ids.push_back(delivery.output);
            }
        }
        std::sort(ids.begin(), ids.end());
        return ids;
    }

    std::vector<Delivery> deliveries;
};
} // namespace Support
