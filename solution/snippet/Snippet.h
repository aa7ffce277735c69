// What FileMaker's clipboard XML contains.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace solution {

struct Snippet {
  std::string xmlType;  ///< of the first object in it: "XMSS", "XMFD" ...; empty when that is unknown
  std::string title;    ///< one short line: "Script “Import”", "Field Orders::Total and 3 more"
  std::string text;     ///< its content in readable form; the end of a very long one is missing
};

/// Whether `text` looks like clipboard XML of FileMaker, readable or not.
bool IsSnippet(std::string_view text);

/// Reads clipboard XML in any encoding. On failure returns nothing, and `error` holds the reason, to follow a name:
/// "is not well-formed XML in line 3: …".
std::optional<Snippet> ReadSnippet(std::string bytes, std::string& error);

}  // namespace solution
