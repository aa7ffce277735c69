#include "http/Parameters.h"

#include <charconv>

#include "http/HttpError.h"

namespace service {

std::optional<std::int64_t> WholeNumber(std::string_view text) {
  std::int64_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc() && end == text.data() + text.size() ? std::optional(number) : std::nullopt;
}

std::optional<std::string> Parameter(const Request& request, const std::string& name) {
  const auto found = request.query.find(name);
  return found == request.query.end() ? std::nullopt : std::optional(found->second);
}

std::int64_t Number(const char* name, const std::optional<std::string>& text, std::int64_t lowest, std::int64_t highest,
                    std::int64_t otherwise) {
  if (!text) return otherwise;
  const auto number = WholeNumber(*text);
  if (!number || *number < lowest || *number > highest) {
    throw HttpError(
        400, std::string(name) + " must be a number from " + std::to_string(lowest) + " to " + std::to_string(highest));
  }
  return *number;
}

std::int64_t Rows(const Request& request) {
  constexpr std::int64_t kDefaultRows = 100;
  return Number("limit", Parameter(request, "limit"), 1, kMostRows, kDefaultRows);
}

}  // namespace service
