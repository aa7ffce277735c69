// UTF-8 validity, against a library's reader.
#include "Utf8.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>

namespace {

std::string WithoutIllFormedBytes(const std::string& bytes) {
  using nlohmann::json;
  return json::parse(json(bytes).dump(-1, ' ', false, json::error_handler_t::ignore));
}

std::string WithoutReplacements(const std::string& text) {
  std::string kept;
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (text.compare(at, 3, "\uFFFD") == 0) {
      at += 2;
    } else {
      kept += text[at];
    }
  }
  return kept;
}

TEST(Utf8, AgreesWithALibrary) {
  // Every pair of lead and second byte, continued and not, at every distance from a block of eight.
  for (int lead = 0; lead < 256; ++lead) {
    for (int second = 0; second < 256; ++second) {
      const std::string start = {static_cast<char>(lead), static_cast<char>(second)};
      for (const char* rest : {"", "\x80", "\x80\xBF", "\x80\xBF\x80", "a", "\x80z12345678"}) {
        const std::string bytes = std::string(static_cast<std::size_t>(second % 9), 'a') + start + rest;
        const std::string wellFormed = WithoutIllFormedBytes(bytes);
        ASSERT_EQ(IsUtf8(bytes), wellFormed == bytes) << lead << ' ' << second << ' ' << rest;
        const std::string replaced = ReplaceIllFormedUtf8(bytes);
        ASSERT_EQ(WithoutReplacements(replaced), wellFormed) << lead << ' ' << second << ' ' << rest;
        ASSERT_EQ(replaced.size(), wellFormed.size() + 3 * (bytes.size() - wellFormed.size())) << "one for each byte";
      }
    }
  }
}

}  // namespace
