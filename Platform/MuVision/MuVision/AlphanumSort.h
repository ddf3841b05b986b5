#pragma once

#include <zApi/zExport.h>

#include <string>
#include <vector>

namespace Mu::Vision
{
/// Sorts names as people count: runs of digits compare as numbers of any length, so "scan2" stands before "scan10", and
/// everything else byte by byte, ASCII letters without regard to case. Names that agree so far ("a1", "a01", "A1")
/// stand in bytewise order, so that the order never depends on the one before.
MU_PLATFORM_EXPORT void SortStringByAlphanum(std::vector<std::string>& names);
} // namespace Mu::Vision
