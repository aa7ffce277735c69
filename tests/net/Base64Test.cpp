#include "net/Base64.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <utility>

namespace {

using namespace std::string_literals;

/// Bit by bit, as the standard tells it.
std::string ReferenceBase64(const std::string& bytes) {
  const std::string alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string bits, result;
  for (const unsigned char byte : bytes) {
    for (int bit = 7; bit >= 0; --bit) bits += byte >> bit & 1;
  }
  while (bits.size() % 6 != 0) bits += '\0';
  for (std::size_t at = 0; at < bits.size(); at += 6) {
    int index = 0;
    for (std::size_t i = 0; i < 6; ++i) index = index * 2 + bits[at + i];
    result += alphabet[index];
  }
  while (result.size() % 4 != 0) result += '=';
  return result;
}

TEST(Base64Encode, MatchesTheStandardsExamples) {
  const std::pair<std::string, std::string> cases[] = {
      {"", ""},
      {"f", "Zg=="},
      {"fo", "Zm8="},
      {"foo", "Zm9v"},
      {"foob", "Zm9vYg=="},
      {"fooba", "Zm9vYmE="},
      {"foobar", "Zm9vYmFy"},
      {"\0"s, "AA=="},
      {"\0\0"s, "AAA="},
      {"\xff\xff\xff", "////"},
      {"\xfb\xef\xbe", "++++"},
  };
  for (const auto& [bytes, expected] : cases) EXPECT_EQ(Base64Encode(bytes), expected);
}

TEST(Base64Encode, AgreesWithTheReferenceAtEverySize) {
  std::mt19937 random(1);
  std::string bytes;
  while (bytes.size() < 7000) {
    ASSERT_EQ(Base64Encode(bytes), ReferenceBase64(bytes)) << bytes.size();
    const std::size_t more = bytes.size() < 300 ? 1 : 1 + random() % 100;
    for (std::size_t i = 0; i < more; ++i) bytes += static_cast<char>(random());
  }
}

TEST(Base64Encode, TakesNoMoreMemoryThanTheResult) {
  for (const std::size_t size : {1000, 3000, 100000, 1 << 20}) {
    const std::string encoded = Base64Encode(std::string(size, 'x'));
    EXPECT_EQ(encoded.capacity(), encoded.size());
  }
}

}  // namespace
