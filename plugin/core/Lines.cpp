#include "core/Lines.h"

#include <algorithm>

std::vector<std::string_view> NonEmptyLines(const std::string& text) {
  std::vector<std::string_view> lines;
  const std::string_view all = text;
  for (std::size_t start = 0; start < all.size();) {
    const std::size_t end = std::min(all.find_first_of("\r\n", start), all.size());
    if (end > start) lines.push_back(all.substr(start, end - start));
    start = end + 1;
  }
  return lines;
}
