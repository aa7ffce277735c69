#include "Utf8.h"

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace {

// The length of the well-formed character at the start of `text`; 0 if it is ill-formed.
std::size_t CharacterLength(const unsigned char* text, std::size_t available) {
  const unsigned char lead = text[0];
  if (lead < 0x80) return 1;
  if (lead < 0xC2 || lead > 0xF4) return 0;
  const std::size_t length = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
  if (available < length) return 0;
  for (std::size_t i = 1; i < length; ++i) {
    if ((text[i] & 0xC0) != 0x80) return 0;
  }
  const unsigned char second = text[1];
  const bool outOfRange = (lead == 0xE0 && second < 0xA0) || (lead == 0xED && second > 0x9F) ||
                          (lead == 0xF0 && second < 0x90) || (lead == 0xF4 && second > 0x8F);
  return outOfRange ? 0 : length;
}

bool EightAsciiBytes(const unsigned char* text) {
  std::uint64_t bytes;
  std::memcpy(&bytes, text, sizeof bytes);
  return (bytes & 0x8080808080808080u) == 0;
}

}  // namespace

bool IsUtf8(std::string_view bytes) {
  const auto* text = reinterpret_cast<const unsigned char*>(bytes.data());
  for (std::size_t at = 0; at < bytes.size();) {
    if (bytes.size() - at >= 8 && EightAsciiBytes(text + at)) {
      at += 8;
      continue;
    }
    const std::size_t length = CharacterLength(text + at, bytes.size() - at);
    if (length == 0) return false;
    at += length;
  }
  return true;
}

std::string ReplaceIllFormedUtf8(std::string_view bytes) {
  std::string text;
  while (!bytes.empty()) {
    const std::size_t length = CharacterLength(reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size());
    text += length == 0 ? "\xEF\xBF\xBD" : bytes.substr(0, length);
    bytes.remove_prefix(length == 0 ? 1 : length);
  }
  return text;
}
