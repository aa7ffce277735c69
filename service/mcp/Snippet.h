// FileMaker's clipboard XML, as an assistant writes it.
#pragma once

#include <string>
#include <string_view>

namespace service::mcp {

/// Why FileMaker could not paste `xml` as content of the kind `xmlType`, which it would not report; empty if it could.
std::string CheckSnippet(std::string_view xmlType, const std::string& xml);

/// Where the user pastes content of this kind.
std::string_view PlaceOf(std::string_view xmlType);

/// The number of elements directly inside the snippet `xml`, which CheckSnippet has accepted.
std::size_t CountObjects(const std::string& xml);

}  // namespace service::mcp
