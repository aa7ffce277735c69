// UTF-8 validity, against a decoder that goes by the definition.
#include "core/Utf8.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <string>

namespace {

// Decodes every character and checks that it is written in its shortest form.
bool SlowIsUtf8(const std::string& bytes) {
  for (std::size_t at = 0; at < bytes.size();) {
    const auto lead = static_cast<unsigned char>(bytes[at]);
    const std::size_t length = lead < 0x80 ? 1 : lead >> 5 == 6 ? 2 : lead >> 4 == 14 ? 3 : lead >> 3 == 30 ? 4 : 0;
    if (length == 0 || at + length > bytes.size()) return false;
    std::uint32_t code = length == 1 ? lead : lead & (0x7F >> length);
    for (std::size_t i = 1; i < length; ++i) {
      if ((bytes[at + i] & 0xC0) != 0x80) return false;
      code = code << 6 | (bytes[at + i] & 0x3F);
    }
    const std::uint32_t smallest[] = {0, 0, 0x80, 0x800, 0x10000};
    if (code < smallest[length] || code > 0x10FFFF || (code >= 0xD800 && code < 0xE000)) return false;
    at += length;
  }
  return true;
}

TEST(IsUtf8, AgreesWithTheDefinition) {
  // Every pair of lead and second byte, with enough continuation, at every distance from a block of eight.
  for (int lead = 0; lead < 256; ++lead) {
    for (int second = 0; second < 256; ++second) {
      const std::string tail = {static_cast<char>(lead), static_cast<char>(second), '\x80', '\xBF'};
      for (std::size_t length = 1; length <= tail.size(); ++length) {
        const std::string bytes = std::string(static_cast<std::size_t>(second % 9), 'a') + tail.substr(0, length);
        ASSERT_EQ(IsUtf8(bytes), SlowIsUtf8(bytes)) << lead << ' ' << second << ' ' << length;
      }
    }
  }
  std::mt19937 random(1);
  const std::string pieces[] = {"a", "12345678", "ß", "€", "🎻", "\xC0\x80", "\xED\xA0\x80", "\xF4\x90\x80\x80", "\x80"};
  for (int round = 0; round < 20000; ++round) {
    std::string bytes;
    for (int n = static_cast<int>(random() % 12); n > 0; --n) bytes += pieces[random() % (round % 2 == 0 ? 5 : 9)];
    ASSERT_EQ(IsUtf8(bytes), SlowIsUtf8(bytes)) << bytes;
  }
}

}  // namespace
