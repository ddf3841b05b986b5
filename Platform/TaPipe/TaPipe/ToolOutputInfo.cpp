#include <TaPipe/ToolOutputInfo.h>

#include <utility>

namespace TaPipe
{
ToolOutputInfo::ToolOutputInfo(IOutputOwner& outputOwner, std::string outputId, std::size_t place,
                               std::unique_ptr<Ta::Properties::Structure> parameters)
    : owner(outputOwner)
    , id(std::move(outputId))
    , displayName(id)
    , params(std::move(parameters))
    , index(place)
{
}

ToolOutputInfo::~ToolOutputInfo() = default;

const char* ToolOutputInfo::Id() const
{
    return id.c_str();
}

const char* ToolOutputInfo::DisplayName() const
{
    return displayName.c_str();
}

std::size_t ToolOutputInfo::Index() const
{
    return index;
}

bool ToolOutputInfo::IsEnabled() const
{
    return enabled;
}

PipeDataFormat ToolOutputInfo::DataFormat() const
{
    return format;
}

std::size_t ToolOutputInfo::Priority() const
{
    return priority;
}

Ta::Properties::Node& ToolOutputInfo::Params() const
{
    return *params;
}

const std::vector<std::string>& ToolOutputInfo::AssociatedOutputs() const
{
    return associated;
}

const char* ToolOutputInfo::Units() const
{
    return units.c_str();
}

ToolOutputInfo& ToolOutputInfo::SetDisplayName(const char* name)
{
    displayName = name == nullptr ? "" : name;
    return *this;
}

ToolOutputInfo& ToolOutputInfo::Enable(bool enable)
{
    enabled = enable;
    return *this;
}

ToolOutputInfo& ToolOutputInfo::SetDataFormat(PipeDataType type, bool isArray)
{
    format = {type, isArray};
    return *this;
}

ToolOutputInfo& ToolOutputInfo::SetPriority(std::size_t newPriority)
{
    priority = newPriority;
    return *this;
}

ToolOutputInfo& ToolOutputInfo::AssociateOutput(const char* outputId)
{
    if (outputId != nullptr)
    {
        associated.emplace_back(outputId);
    }
    return *this;
}

ToolOutputInfo& ToolOutputInfo::SetUnits(const char* text)
{
    units = text == nullptr ? "" : text;
    return *this;
}

void ToolOutputInfo::NotifyParamsChanged()
{
    owner.OnOutputParams(*this);
}

void ToolOutputInfo::SetIndex(std::size_t newIndex)
{
    index = newIndex;
}

ToolOutputInfo::Sending& ToolOutputInfo::State()
{
    return sending;
}

const ToolOutputInfo::Sending& ToolOutputInfo::State() const
{
    return sending;
}
} // namespace TaPipe
