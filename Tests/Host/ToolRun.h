#pragma once

#include "HostTestFiles.h"

#include <Support/GraphicElements.h>
#include <TaVision/TaVision.h>
#include <Tools/ToolGraphic.h>

#include <sstream>

/// Words for tests of tools: one run of a tool on messages made for it, and what it drew.
namespace Mu::Host::Testing
{
/// A tool that was run once.
class ToolRun
{
public:
    using Messages = std::vector<std::pair<std::string, Ta::Object<void*>>>; ///< by the input

    ToolRun(const ToolRegistry& registry, std::string_view type, const nlohmann::json& parameters,
            const Messages& messages, const std::vector<OutputSetup>& outputs = {})
        : runner(*registry.Find(type), "measured", place)
    {
        runner.Restore(parameters);
        std::ranges::for_each(outputs, [this](const OutputSetup& setup) { runner.ConfigureOutput(setup); });
        std::vector<Delivery> deliveries;
        for (const auto& [input, message] : messages)
        {
            runner.Route(input, "source/" + input, place);
            deliveries.push_back({input, {message}});
        }
        runner.Start();
        results = runner.Execute(deliveries);
        runner.Stop();
    }

    [[nodiscard]] ResultState State(std::string_view output) const
    {
        return ResultOf(results, output).state;
    }

    /// A failure of the test if there is no value.
    [[nodiscard]] double Value(std::string_view output) const
    {
        const Result result = ResultOf(results, output);
        EXPECT_EQ(result.state, ResultState::Value) << output;
        return result.value;
    }

    [[nodiscard]] std::string Units(std::string_view output) const
    {
        return ResultOf(results, output).units;
    }

    /// The message that left on an output; a null handle if none did.
    [[nodiscard]] Ta::Object<void*> Message(const std::string& output) const
    {
        const auto messages = runner.SentOn(output);
        return messages.empty() ? Ta::Object<void*>() : messages.front();
    }

    /// The outputs that gave nothing but nulls.
    [[nodiscard]] std::vector<std::string> Nulls() const
    {
        std::vector<std::string> outputs;
        for (const Result& result : results)
        {
            if (result.state == ResultState::Null)
            {
                outputs.push_back(result.output);
            }
        }
        return outputs;
    }

    /// The graphic, which the run keeps. A failure of the test if there is none.
    [[nodiscard]] void* Graphic() const
    {
        void* const graphic = TvRenderingMsg_Rendering(Message("Graphic").Get());
        EXPECT_NE(graphic, nullptr) << "there is no graphic";
        return graphic;
    }

    /// All elements of the graphic, as texts.
    [[nodiscard]] std::vector<std::string> Drawn() const
    {
        void* const graphic = Graphic();
        std::vector<std::string> texts;
        for (std::size_t i = 0; i < TpGraphic_Count(graphic); ++i)
        {
            texts.push_back(Support::TextOf(TpGraphic_At(graphic, i)));
        }
        return texts;
    }

private:
    JobPlace place{"job.json", "tools[0]"};
    ToolRunner runner;
    std::vector<Result> results;
};

// Elements as texts.

template <typename... Parts>
std::string TextOf(const Parts&... parts)
{
    using Support::operator<<;
    std::ostringstream text;
    (text << ... << parts);
    return text.str();
}

inline std::string DotAt(const zPoint3d32f& point)
{
    return TextOf("points 8 2 ", ToolColours::FOUND, ' ', point);
}

/// What carries a dimension over what is bright.
inline std::string CasingOf(const zPoint3d32f& from, const zPoint3d32f& to)
{
    return TextOf("lines 2 ", ToolColours::CASING, " 0 0 ", from, ' ', to);
}

/// A dimension line with arrows at both ends, in yellow.
inline std::string DimensionOf(const zPoint3d32f& from, const zPoint3d32f& to)
{
    return TextOf("lines 2 ", 0xFFFFFF00U, " 1 1 ", from, ' ', to);
}

inline std::string RayFrom(const zPoint3d32f& from, const zPoint3d32f& direction, float width, z32u colour)
{
    return TextOf("ray ", from, ' ', direction, ' ', width, ' ', colour);
}

/// An output that is switched off.
inline OutputSetup Disabled(const char* output)
{
    return {output, false, false, {}, {}, {"job.json", "tools[0]"}};
}
} // namespace Mu::Host::Testing
