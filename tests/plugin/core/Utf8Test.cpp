// UTF-8 validity, against a library's reader.
#include "Utf8.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
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
  // Every pair of lead and second byte, continued and not, at every distance from a block of eight.
  for (int lead = 0; lead < 256; ++lead) {
    for (int second = 0; second < 256; ++second) {
      const std::string start = {static_cast<char>(lead), static_cast<char>(second)};
      for (const char* rest : {"", "\x80", "\x80\xBF", "\x80\xBF\x80", "a", "\x80z12345678"}) {
        const std::string bytes = std::string(static_cast<std::size_t>(second % 9), 'a') + start + rest;
        ASSERT_EQ(IsUtf8(bytes), LibraryTakesWhole(bytes)) << lead << ' ' << second << ' ' << rest;
      }
    }
  }
}

}  // namespace
