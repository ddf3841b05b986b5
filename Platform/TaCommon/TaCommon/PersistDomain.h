#pragma once

#include <zApi/zTypes.h>

namespace TaCommon
{
/// A part of the host's store that is loaded and saved on its own. The numbers are the host's to extend.
enum class PersistDomain : z32s
{
    Settings = 0, ///< what the host keeps for itself
    Files = 1,    ///< the users' files: models, templates, references
};
} // namespace TaCommon
