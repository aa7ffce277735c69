// FileMaker's clipboard XML, as an assistant writes it.
#pragma once

#include <string>
#include <string_view>

namespace service::mcp {

/// What is wrong with `xml` as content of the clipboard of the kind `xmlType`; FileMaker would paste nothing and say
/// nothing. Empty when nothing is.
std::string CheckSnippet(std::string_view xmlType, const std::string& xml);

/// Where the user pastes content of this kind.
std::string_view PlaceOf(std::string_view xmlType);

/// How many elements the snippet `xml`, which suits its kind, has directly inside it.
std::size_t CountObjects(const std::string& xml);

}  // namespace service::mcp
