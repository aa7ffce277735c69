// The content of FileMaker's clipboard XML.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace solution {

struct Snippet {
  std::string xmlType;  ///< kind of the first object: "XMSS", "XMFD" ...; empty when that is unknown
  std::string title;    ///< one short line: "Script “Import”", "Field Orders::Total and 3 more"
  std::string text;     ///< the content in readable form, cut if it is very long
};

/// Whether `text` looks like clipboard XML of FileMaker, even if damaged.
bool IsSnippet(std::string_view text);

/// Reads clipboard XML in any encoding. On failure returns nothing, and sets `error` to the reason, worded to follow a
/// name: "is not well-formed XML in line 3: …".
std::optional<Snippet> ReadSnippet(std::string bytes, std::string& error);

}  // namespace solution
