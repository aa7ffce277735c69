// Version texts. Safe on any thread.
#pragma once

#include <array>
#include <string>

/// Major, minor and patch number at the start of `text`, each an optional sign and digits after optional white space,
/// separated by dots. The rest is ignored and missing numbers are 0, so "v2" is 0.0.0. A number outside the range of
/// int becomes the nearest int.
std::array<int, 3> ParseVersion(const std::string& text);
