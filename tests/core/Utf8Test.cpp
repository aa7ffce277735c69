// UTF-8 validity, against a library's reader.
#include "core/Utf8.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <random>
#include <string>

namespace {

// The library passes over what is not UTF-8, or writes something else for it.
bool LibraryTakesWhole(const std::string& bytes) {
  using nlohmann::json;
  const json text = bytes;
  return text.dump(-1, ' ', false, json::error_handler_t::ignore) ==
         text.dump(-1, ' ', false, json::error_handler_t::replace);
}

TEST(IsUtf8, AgreesWithALibrary) {
  // Every pair of lead and second byte, with enough continuation, at every distance from a block of eight.
  for (int lead = 0; lead < 256; ++lead) {
    for (int second = 0; second < 256; ++second) {
      const std::string tail = {static_cast<char>(lead), static_cast<char>(second), '\x80', '\xBF'};
      for (std::size_t length = 1; length <= tail.size(); ++length) {
        const std::string bytes = std::string(static_cast<std::size_t>(second % 9), 'a') + tail.substr(0, length);
        ASSERT_EQ(IsUtf8(bytes), LibraryTakesWhole(bytes)) << lead << ' ' << second << ' ' << length;
      }
    }
  }
  std::mt19937 random(1);
  const std::string pieces[] = {"a", "12345678", "ß", "€", "🎻", "\xC0\x80", "\xED\xA0\x80", "\xF4\x90\x80\x80", "\x80"};
  for (int round = 0; round < 20000; ++round) {
    std::string bytes;
    for (int n = static_cast<int>(random() % 12); n > 0; --n) bytes += pieces[random() % (round % 2 == 0 ? 5 : 9)];
    ASSERT_EQ(IsUtf8(bytes), LibraryTakesWhole(bytes)) << bytes;
  }
}

}  // namespace
