#include "calc/JsonPath.h"

#include <algorithm>
#include <charconv>

namespace calc {
namespace {

std::optional<std::size_t> Position(std::string_view text) {
  std::size_t position = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), position);
  if (text.empty() || error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return position;
}

std::string_view TakeUpTo(std::string_view& rest, std::size_t end, std::size_t skipped) {
  const auto taken = rest.substr(0, end);
  rest.remove_prefix(std::min(end + skipped, rest.size()));
  return taken;
}

// The content of brackets; the opening bracket is already consumed.
std::optional<JsonStep> TakeBracket(std::string_view& rest) {
  const char quote = rest.empty() ? '\0' : rest.front();
  if (quote == '\'' || quote == '"') {
    rest.remove_prefix(1);
    const auto end = rest.find(std::string{quote, ']'});
    if (end == rest.npos) return std::nullopt;
    return std::string(TakeUpTo(rest, end, 2));
  }
  const auto end = rest.find(']');
  if (end == rest.npos) return std::nullopt;
  const auto position = Position(TakeUpTo(rest, end, 1));
  return position ? std::optional<JsonStep>(*position) : std::nullopt;
}

}  // namespace

std::optional<JsonPath> ParseJsonPath(std::string_view path) {
  if (const auto position = Position(path)) return JsonPath{*position};
  JsonPath steps;
  while (!path.empty()) {
    if (path.front() == '[') {
      path.remove_prefix(1);
      const auto step = TakeBracket(path);
      if (!step) return std::nullopt;
      steps.push_back(*step);
    } else {
      if (path.front() == '.') path.remove_prefix(1);
      const auto end = std::min(path.find_first_of(".["), path.size());
      if (end > 0) steps.emplace_back(std::string(TakeUpTo(path, end, 0)));
    }
  }
  return steps;
}

}  // namespace calc
