#include "core/Lines.h"

#include <algorithm>

std::vector<std::string_view> NonEmptyLines(std::string_view text) {
  std::vector<std::string_view> lines;
  for (std::size_t start = 0; start < text.size();) {
    const std::size_t end = std::min(text.find_first_of("\r\n", start), text.size());
    if (end > start) lines.push_back(text.substr(start, end - start));
    start = end + 1;
  }
  return lines;
}
