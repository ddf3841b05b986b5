#pragma once

#include <array>

/// The options with which texts are read: the first byte of an input chooses one.
inline constexpr std::array csvOptionCases{
    "{}",
    R"({"unit": "mm"})",
    R"({"unit": ["mm", "mm", "um"], "invalid": -1, "offset": [1, 2, 3]})",
    R"({"spacing": [0.1, 0.2, 0.001]})",
    R"({"spacing": [0.1, 0.2, 0.001], "xAxis": "rows", "invalid": 0})",
    R"({"layout": "profile", "spacing": [0.1, 1, 1]})",
    R"({"unit": "um", "columns": {"x": 2, "z": 1}})",
    R"({"unit": 1e300, "layout": "points", "columns": {"x": 1, "y": 2, "z": 3, "intensity": 4}})",
    R"({"unit": "in", "columns": {"x": "x", "z": "z", "intensity": 3}})",
};
