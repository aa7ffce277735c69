// Checks the tags of an XML text before it is parsed.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

namespace solution {

inline constexpr std::string_view kXmlWhiteSpace = " \t\r\n";

struct Flaw {
  std::size_t offset;
  const char* reason;  ///< follows "is damaged in line N: "
};

/// Finds the first tag that is nested too deeply (the parser recurses for each level) or that the parser would read
/// differently from this check: a document type, or quotation marks outside attribute values. FileMaker writes none of
/// these. The parser reports all other faults.
std::optional<Flaw> FindFlaw(std::string_view text);

}  // namespace solution
