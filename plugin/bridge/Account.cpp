#include "bridge/Account.h"

#include <charconv>

#include "core/State.h"

namespace {

/// The length of `byte` at the start of `text`: 3 if percent-encoded, 1 if verbatim, 0 if `text` starts otherwise.
std::size_t LengthOfByte(std::string_view text, char byte) {
  if (text.size() >= 3 && text[0] == '%') {
    unsigned char decoded = 0;
    const auto end = std::from_chars(text.data() + 1, text.data() + 3, decoded, 16).ptr;
    if (end == text.data() + 3 && static_cast<char>(decoded) == byte) return 3;
  }
  return text.starts_with(byte) ? 1 : 0;
}

/// The length of `key` at the start of `text`; 0 if `text` starts otherwise.
std::size_t LengthOfKey(std::string_view text, std::string_view key) {
  if (text.starts_with(key)) return key.size();
  std::string_view rest = text;
  for (const char byte : key) {
    const std::size_t length = LengthOfByte(rest, byte);
    if (length == 0) return 0;
    rest.remove_prefix(length);
  }
  return text.size() - rest.size();
}

}  // namespace

Account CurrentAccount() { return {g_baseUrl, g_licenseKey}; }

std::string WithoutKey(std::string_view text, std::string_view licenseKey) {
  std::string result;
  while (!text.empty()) {
    const std::size_t length = LengthOfKey(text, licenseKey);
    result += length == 0 ? text.substr(0, 1) : "[account key]";
    text.remove_prefix(length == 0 ? 1 : length);
  }
  return result;
}
