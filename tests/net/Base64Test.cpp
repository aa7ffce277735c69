// Base64 against the system library's, which has another interface.
#include "net/Base64.h"

#include <gtest/gtest.h>
#include <netinet/in.h>
#include <resolv.h>

#include <random>
#include <string>

namespace {

std::string SystemsBase64(const std::string& bytes) {
  std::string result(bytes.size() * 2 + 4, '\0');
  const auto from = reinterpret_cast<const unsigned char*>(bytes.data());
  result.resize(static_cast<std::size_t>(b64_ntop(from, bytes.size(), result.data(), result.size())));
  return result;
}

TEST(Base64Encode, AgreesWithTheSystemsAtEverySize) {
  std::mt19937 random(1);
  std::string bytes;
  while (bytes.size() < 7000) {
    ASSERT_EQ(Base64Encode(bytes), SystemsBase64(bytes)) << bytes.size();
    for (std::size_t more = bytes.size() / 300 + 1; more > 0; --more) bytes += static_cast<char>(random());
  }
}

}  // namespace
