// Generated texts of the kinds that FileMaker writes, the same in every run.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace bench {

/// Script steps and fields as FileMaker puts them on the clipboard: quoted attributes, calculations with line feeds,
/// tabs and non-ASCII characters, no white space between elements.
std::string CopiedXml(std::size_t size);

/// Parts of a solution saved as XML: a line for each element, indented with tabs.
std::string SavedXml(std::size_t size);

/// Words and spaces, which JSON does not escape.
std::string Prose(std::size_t size);

/// Names of 8 to 40 characters, each ended by a return, as FileMaker's functions list them.
std::string NameList(std::size_t size);

/// Texts used in turn, so that branch prediction cannot adapt to one short text, which it never could in real use.
class Turns {
 public:
  /// Cuts `text` into texts of `size` bytes.
  Turns(const std::string& text, std::size_t size);

  const std::string& Next();

  /// Each text after `change`.
  template <typename Change>
  Turns Changed(Change change) const {
    Turns changed = *this;
    for (std::string& text : changed.texts_) text = change(text);
    return changed;
  }

  std::size_t AverageSize() const;

 private:
  std::vector<std::string> texts_;
  std::size_t next_ = 0;
};

}  // namespace bench
