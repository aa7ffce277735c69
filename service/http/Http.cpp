#include "http/Http.h"

#include <algorithm>
#include <cctype>
#include <charconv>

namespace service {
namespace {

std::string Value(const std::map<std::string, std::string>& values, const std::string& name) {
  const auto found = values.find(name);
  return found == values.end() ? std::string() : found->second;
}

}  // namespace

std::string Request::Header(const std::string& name) const { return Value(headers, name); }

std::string Request::Parameter(const std::string& name) const { return Value(query, name); }

void SetTarget(Request& request, std::string_view target) {
  const auto mark = target.find('?');
  request.path = target.substr(0, mark);
  if (mark == std::string_view::npos) return;
  for (std::string_view rest = target.substr(mark + 1); !rest.empty();) {
    const std::string_view pair = rest.substr(0, rest.find('&'));
    rest.remove_prefix(std::min(rest.size(), pair.size() + 1));
    const auto equals = pair.find('=');
    const auto value = equals == std::string_view::npos ? std::string_view() : pair.substr(equals + 1);
    request.query.emplace(PercentDecoded(pair.substr(0, equals), true), PercentDecoded(value, true));
  }
}

std::string PercentDecoded(std::string_view text, bool plusIsSpace) {
  std::string decoded;
  decoded.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    unsigned char byte = 0;
    const char* digits = text.data() + i + 1;
    if (text[i] == '%' && i + 2 < text.size() && std::from_chars(digits, digits + 2, byte, 16).ptr == digits + 2) {
      decoded += static_cast<char>(byte);
      i += 2;
    } else {
      decoded += plusIsSpace && text[i] == '+' ? ' ' : text[i];
    }
  }
  return decoded;
}

std::string MediaType(std::string_view contentType) {
  std::string type(contentType.substr(0, contentType.find_first_of("; \t")));
  std::transform(type.begin(), type.end(), type.begin(),
                 [](unsigned char byte) { return static_cast<char>(std::tolower(byte)); });
  return type;
}

}  // namespace service
