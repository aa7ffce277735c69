#include "fmsim/Seconds.h"

#include <cstdlib>

namespace {

constexpr double kLongest = 86400;

}  // namespace

std::optional<std::chrono::milliseconds> ParseSeconds(const std::string& text) {
  char* end = nullptr;
  const double seconds = std::strtod(text.c_str(), &end);
  if (text.empty() || *end != '\0' || !(seconds >= 0 && seconds <= kLongest)) return std::nullopt;
  return std::chrono::milliseconds(static_cast<long long>(seconds * 1000));
}
