// The text of an export: FileMaker writes UTF-16, other tools hand it on as UTF-8.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace sim {

/// Turns the bytes of an export, UTF-16 of either order or UTF-8, with or without a byte-order mark, into UTF-8 without
/// one. The XML declaration is not looked at: FileMaker's names no encoding and converting tools leave it as it is.
/// False with `reason`, which names the line, when the bytes are no such text. Half characters in UTF-16, which
/// FileMaker writes when a text in the file holds one, become U+FFFD, and `notes` a line that says so.
bool DecodeExport(std::string& text, std::string& reason, std::vector<std::string>& notes);

/// Where the lines of a text start; made before a parser that works in place destroys it.
class LineIndex {
 public:
  explicit LineIndex(std::string_view text);
  /// The number, from 1, of the line that holds the byte at `offset`.
  std::size_t LineOf(std::size_t offset) const;

 private:
  std::vector<std::size_t> ends_;
};

}  // namespace sim
