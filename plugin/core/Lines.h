// FileMaker's lists as lines. Safe on any thread.
#pragma once

#include <string_view>
#include <vector>

/// The non-empty lines of `text`, separated by carriage returns, line feeds or both. They point into `text`.
std::vector<std::string_view> NonEmptyLines(std::string_view text);
