// The text of an export: FileMaker writes UTF-16, other tools convert it to UTF-8.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace solution {

/// Why an export is refused, to follow its name: "is not valid UTF-8 in line 3". Never leaves ReadDesign.
struct Refusal {
  std::string reason;
};

/// Turns the bytes of an export (UTF-16 of either byte order, or UTF-8, with or without a byte-order mark) into UTF-8
/// without a mark. The XML declaration is ignored: FileMaker's names no encoding, and converting tools do not change
/// it. A lone surrogate, which FileMaker writes if a text of the file contains one, becomes U+FFFD and adds a line to
/// `notes`. Throws Refusal when the bytes are not such a text.
std::string DecodeExport(std::string bytes, std::vector<std::string>& notes);

/// Up to version 19.4 FileMaker writes a comment that contains `<![CDATA[` with that section unescaped inside an
/// attribute value. Escapes these sections, which makes the text well-formed, and leaves all other text unchanged.
/// Returns how many sections were escaped.
std::size_t EscapeCdataInAttributes(std::string& text);

/// Finds line numbers. Must be created before a parser that works in place overwrites the text.
class LineIndex {
 public:
  explicit LineIndex(std::string_view text);
  /// The number, counted from 1, of the line that holds the byte at `offset`.
  std::size_t LineOf(std::size_t offset) const;

 private:
  std::vector<std::size_t> ends_;
};

}  // namespace solution
