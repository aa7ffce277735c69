// UTF-8 validity, against a library's reader.
#include "Utf8.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

namespace {

using nlohmann::json;

/// `bytes` without those that are not part of a well-formed character.
std::string WellFormed(const std::string& bytes) {
  return json::parse(json(bytes).dump(-1, ' ', false, json::error_handler_t::ignore));
}

TEST(Utf8, AgreesWithALibrary) {
  // Every pair of lead and second byte, continued and not, at every distance from a block of eight.
  for (int lead = 0; lead < 256; ++lead) {
    for (int second = 0; second < 256; ++second) {
      const std::string start = {static_cast<char>(lead), static_cast<char>(second)};
      for (const char* rest : {"", "\x80", "\x80\xBF", "\x80\xBF\x80", "a", "\x80z12345678"}) {
        const std::string bytes = std::string(static_cast<std::size_t>(second % 9), 'a') + start + rest;
        const std::string wellFormed = WellFormed(bytes);
        ASSERT_EQ(IsUtf8(bytes), wellFormed == bytes) << lead << ' ' << second << ' ' << rest;
        std::string replaced = ReplaceIllFormedUtf8(bytes);
        ASSERT_EQ(replaced.size(), wellFormed.size() + 3 * (bytes.size() - wellFormed.size())) << "one for each byte";
        for (std::size_t at; (at = replaced.find("\uFFFD")) != replaced.npos;) replaced.erase(at, 3);
        ASSERT_EQ(replaced, wellFormed) << lead << ' ' << second << ' ' << rest;
      }
    }
  }
}

}  // namespace
