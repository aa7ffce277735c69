// A look at the tags of an XML text before it is parsed.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

namespace solution {

struct Flaw {
  std::size_t offset;
  const char* reason;  ///< follows "is damaged in line N: "
};

/// Finds the first tag that nests too deeply, for the parser calls itself for each level, and what the parser would
/// read otherwise than this check does: a document type, quotation marks outside attribute values. FileMaker writes
/// none of these. All other faults of the text are left to the parser.
std::optional<Flaw> FindFlaw(std::string_view text);

}  // namespace solution
