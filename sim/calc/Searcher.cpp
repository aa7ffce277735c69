// Knuth-Morris-Pratt, so that repetitive patterns do not make a search quadratic.
#include "calc/Searcher.h"

namespace calc {

Searcher::Searcher(std::u16string_view pattern) : pattern_(pattern), borders_(pattern.size()) {
  for (std::size_t at = 1, matched = 0; at < pattern.size(); ++at) {
    while (matched > 0 && pattern[at] != pattern[matched]) matched = borders_[matched - 1];
    if (pattern[at] == pattern[matched]) ++matched;
    borders_[at] = matched;
  }
}

std::size_t Searcher::Find(std::u16string_view text, std::size_t from) const {
  std::size_t matched = 0;
  for (std::size_t at = from; at < text.size(); ++at) {
    while (matched > 0 && text[at] != pattern_[matched]) matched = borders_[matched - 1];
    if (text[at] == pattern_[matched]) ++matched;
    if (matched == pattern_.size()) return at + 1 - matched;
  }
  return text.npos;
}

}  // namespace calc
