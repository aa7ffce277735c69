#include "canonical/Indent.h"

namespace solution {

std::string Indented(const std::string& text, std::size_t columns) {
  std::string result;
  for (const char c : text) {
    result += c;
    if (c == '\n') result.append(columns, ' ');
  }
  return result;
}

}  // namespace solution
