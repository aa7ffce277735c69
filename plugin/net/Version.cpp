#include "net/Version.h"

#include <climits>
#include <cstdlib>

namespace {

int Clamp(long long number) {
  if (number > INT_MAX) return INT_MAX;
  return number < INT_MIN ? INT_MIN : static_cast<int>(number);
}

}  // namespace

std::array<int, 3> ParseVersion(const std::string& text) {
  std::array<int, 3> numbers{};
  const char* from = text.c_str();
  for (int& number : numbers) {
    char* end = nullptr;
    const long long value = std::strtoll(from, &end, 10);  // clamps, where scanf is undefined
    if (end == from) break;
    number = Clamp(value);
    if (*end != '.') break;
    from = end + 1;
  }
  return numbers;
}
