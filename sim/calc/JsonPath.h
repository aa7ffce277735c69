// Paths into JSON documents as FileMaker writes them: `a.b[2]['c.d']`.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace calc {

/// A key of an object, or a position in an array.
using JsonStep = std::variant<std::string, std::size_t>;
using JsonPath = std::vector<JsonStep>;

/// Splits a UTF-8 path. Keys are separated by dots; `[2]` is a position and `['c.d']` or `["c.d"]` a key with any
/// characters. A path that is only a number is a position. The empty path is the document itself. nullopt for a bracket
/// without its end or without content.
std::optional<JsonPath> ParseJsonPath(std::string_view path);

}  // namespace calc
