// Text search in linear time.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace calc {

class Searcher {
 public:
  /// `pattern` must not be empty and must outlive the searcher.
  explicit Searcher(std::u16string_view pattern);

  /// The offset of the first occurrence in `text` that starts at `from` or later; npos if not found.
  std::size_t Find(std::u16string_view text, std::size_t from) const;

 private:
  std::u16string_view pattern_;
  std::vector<std::size_t> borders_;  // after i matching units: how many still match when the unit behind them does not
};

}  // namespace calc
