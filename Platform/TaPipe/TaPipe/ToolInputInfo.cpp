#include <TaPipe/ToolInputInfo.h>

#include <utility>

namespace TaPipe
{
ToolInputInfo::ToolInputInfo(IInputOwner& inputOwner, std::string inputId, std::size_t place)
    : owner(inputOwner)
    , id(std::move(inputId))
    , displayName(id)
    , index(place)
{
}

const char* ToolInputInfo::Id() const
{
    return id.c_str();
}

const char* ToolInputInfo::DisplayName() const
{
    return displayName.c_str();
}

std::size_t ToolInputInfo::Index() const
{
    return index;
}

bool ToolInputInfo::IsActive() const
{
    return !sourceId.empty();
}

bool ToolInputInfo::IsOptional() const
{
    return optional;
}

const std::vector<PipeDataFormat>& ToolInputInfo::AcceptedDataFormats() const
{
    return acceptedFormats;
}

ToolInputInfo& ToolInputInfo::SetDisplayName(const char* name)
{
    displayName = name == nullptr ? "" : name;
    return *this;
}

ToolInputInfo& ToolInputInfo::SetOptional(bool isOptional)
{
    optional = isOptional;
    return *this;
}

ToolInputInfo& ToolInputInfo::AddAcceptedDataFormat(PipeDataType type, bool isArray)
{
    acceptedFormats.push_back({type, isArray});
    return *this;
}

void ToolInputInfo::Route(const InputRoutedInfo& info)
{
    const bool sourceChanged = sourceId != info.sourceId;
    sourceId = info.sourceId;
    owner.OnRouted(*this, info, sourceChanged);
}

void ToolInputInfo::SetIndex(std::size_t newIndex)
{
    index = newIndex;
}
} // namespace TaPipe
