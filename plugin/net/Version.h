// Version texts.
#pragma once

#include <array>
#include <string>

/// Major, minor and patch number at the start of `text`, each an optional sign and digits after optional white space,
/// joined by dots. What follows is ignored and missing numbers are 0, so "v2" is 0.0.0. Numbers that are too large or
/// small become the largest or smallest int.
std::array<int, 3> ParseVersion(const std::string& text);
