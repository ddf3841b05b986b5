#include <Host/ToolDescription.h>

#include <Host/TextTable.h>
#include <Host/ToolRunner.h>

#include <TaApi/JsonSerializer.h>

#include <fmt/format.h>

#include <array>

namespace Mu::Host
{
namespace
{
using nlohmann::json;
using Ta::Properties::JsonSerializer;

constexpr std::size_t textWidth = 80;

json TypeJson(const ToolType& type)
{
    return {{"type", type.Name()},
            {"version", type.Version()},
            {"displayName", type.Info().DisplayName()},
            {"description", type.Info().Description()},
            {"helpUrl", type.Info().HelpUrl()},
            {"plugin", type.File().string()}};
}

json InputsJson(TaPipe::ITool& tool)
{
    json inputs = json::array();
    for (std::size_t i = 0; i < tool.InputCount(); ++i)
    {
        const TaPipe::ToolInputInfo& input = tool.InputAt(i);
        json accepts = json::array();
        for (const TaPipe::PipeDataFormat& format : input.AcceptedDataFormats())
        {
            accepts.push_back({{"dataType", PipeDataTypeName(format.type)}, {"array", format.isArray}});
        }
        inputs.push_back({{"id", input.Id()},
                          {"displayName", input.DisplayName()},
                          {"optional", input.IsOptional()},
                          {"accepts", std::move(accepts)}});
    }
    return inputs;
}

json OutputsJson(TaPipe::ITool& tool)
{
    json outputs = json::array();
    for (std::size_t i = 0; i < tool.OutputCount(); ++i)
    {
        const TaPipe::ToolOutputInfo& output = tool.OutputAt(i);
        outputs.push_back({{"id", output.Id()},
                           {"displayName", output.DisplayName()},
                           {"dataType", PipeDataTypeName(output.DataFormat().type)},
                           {"array", output.DataFormat().isArray},
                           {"units", output.Units()},
                           {"enabled", output.IsEnabled()}});
    }
    return outputs;
}

json ActionsJson(const TaPipe::ITool& tool)
{
    json actions = json::array();
    for (std::size_t i = 0; i < tool.ActionCount(); ++i)
    {
        actions.push_back(tool.ActionAt(i).Name());
    }
    return actions;
}

std::string Plain(const json& value)
{
    return TerminalText(value.is_string() ? value.get<std::string>()
                                          : value.dump(-1, ' ', false, json::error_handler_t::replace));
}

std::string Entry(const json& object, const char* key)
{
    return object.contains(key) ? Plain(object[key]) : std::string();
}

/// What restricts a parameter: "read only from 0 below 5".
std::string RangeText(const json& schema)
{
    struct Limit
    {
        const char* key;
        const char* text;
    };
    constexpr std::array limits{Limit{"minimum", "from {}"}, Limit{"maximum", "to {}"},
                                Limit{"exclusiveMinimum", "above {}"}, Limit{"exclusiveMaximum", "below {}"},
                                Limit{"enum", "one of {}"}};
    std::string text = schema.value("readOnly", false) ? "read only" : "";
    for (const Limit& limit : limits)
    {
        if (schema.contains(limit.key))
        {
            text.append(text.empty() ? "" : " ");
            text += fmt::format(fmt::runtime(limit.text), Entry(schema, limit.key));
        }
    }
    return text;
}

using Rows = std::vector<std::vector<std::string>>;

void AppendParameters(const json& schema, const json& values, const std::string& prefix, Rows& rows)
{
    for (const json& key : schema["order"])
    {
        const auto name = key.get<std::string>();
        const json& child = schema["properties"][name];
        const json value = values.is_object() && values.contains(name) ? values[name] : json();
        if (child.contains("properties"))
        {
            AppendParameters(child, value, prefix + name + "/", rows);
            continue;
        }
        rows.push_back({"  " + TerminalText(prefix + name), Entry(child, "type"), value.is_null() ? "" : Plain(value),
                        Entry(child, "units"), RangeText(child), Entry(child, "title")});
    }
}

std::string Section(const std::string& title, const std::vector<Column>& columns, const Rows& rows)
{
    std::string text = "\n";
    text += title;
    text += rows.empty() ? ": none\n" : "\n";
    text += rows.empty() ? std::string() : LayOut(columns, rows, textWidth);
    return text;
}

std::string AcceptsText(const json& formats)
{
    std::string text;
    for (const json& format : formats)
    {
        text.append(text.empty() ? "" : ", ").append(format["array"].get<bool>() ? "arrays of " : "");
        text += format["dataType"].get<std::string>();
    }
    return text.empty() ? "anything" : text;
}

Rows InputRows(const json& inputs)
{
    Rows rows;
    for (const json& input : inputs)
    {
        rows.push_back({"  " + Plain(input["id"]), input["optional"].get<bool>() ? "optional" : "required",
                        AcceptsText(input["accepts"])});
    }
    return rows;
}

Rows OutputRows(const json& outputs)
{
    Rows rows;
    for (const json& output : outputs)
    {
        const std::string type = (output["array"].get<bool>() ? "arrays of " : "") + Plain(output["dataType"]);
        rows.push_back({"  " + Plain(output["id"]), type, Plain(output["units"]),
                        output["enabled"].get<bool>() ? "" : "disabled", Plain(output["displayName"])});
    }
    return rows;
}

Rows ActionRows(const json& actions)
{
    Rows rows;
    for (const json& action : actions)
    {
        rows.push_back({"  " + Plain(action)});
    }
    return rows;
}

Column Titled(const char* title)
{
    return {title, Align::Left, Fit::Fixed};
}
} // namespace

std::string ToolListText(const ToolRegistry& registry)
{
    Rows rows;
    for (const ToolType& type : registry.Types())
    {
        rows.push_back(
            {TerminalText(type.Name()), TerminalText(type.Version()), TerminalText(type.Info().Description())});
    }
    return rows.empty()
               ? "No tools were found.\n"
               : LayOut({Titled("tool"), Titled("version"), {"", Align::Left, Fit::Shortened}}, rows, textWidth);
}

json ToolListJson(const ToolRegistry& registry)
{
    json list = json::array();
    for (const ToolType& type : registry.Types())
    {
        list.push_back(TypeJson(type));
    }
    return list;
}

json ToolJson(const ToolType& type)
{
    const ToolRunner runner(type, type.Name(), {type.File(), type.Name()});
    TaPipe::ITool& tool = runner.Tool();
    json description = TypeJson(type);
    description["inputs"] = InputsJson(tool);
    description["outputs"] = OutputsJson(tool);
    description["actions"] = ActionsJson(tool);
    description["parameters"] = JsonSerializer::SerializeSchema(tool.Params());
    description["values"] = JsonSerializer::Serialize(tool.Params());
    return description;
}

std::string ToolText(const ToolType& type)
{
    const json tool = ToolJson(type);
    Rows parameters;
    if (tool["parameters"].contains("order"))
    {
        AppendParameters(tool["parameters"], tool["values"], "", parameters);
    }
    std::string text = Plain(tool["type"]) + " " + Plain(tool["version"]) + "\n";
    for (const char* const key : {"description", "plugin", "helpUrl"})
    {
        text += tool[key].get_ref<const std::string&>().empty() ? "" : "  " + Plain(tool[key]) + "\n";
    }
    const Column first = Titled("");
    return text + Section("Inputs", {first, first, {"", Align::Left, Fit::Shortened}}, InputRows(tool["inputs"])) +
           Section("Outputs", {first, first, first, first, {"", Align::Left, Fit::Shortened}},
                   OutputRows(tool["outputs"])) +
           Section("Actions", {first}, ActionRows(tool["actions"])) +
           Section("Parameters",
                   {first,
                    Titled("type"),
                    {"value", Align::Left, Fit::Shortened},
                    Titled("units"),
                    Titled("range"),
                    {"title", Align::Left, Fit::Shortened}},
                   parameters);
}
} // namespace Mu::Host
