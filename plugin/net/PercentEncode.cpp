#include "net/PercentEncode.h"

#include <string_view>

std::string PercentEncode(const std::string& bytes) {
  constexpr std::string_view kUnreserved = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~";
  constexpr char kDigits[] = "0123456789ABCDEF";
  std::string encoded;
  for (const char c : bytes) {
    if (kUnreserved.find(c) != kUnreserved.npos) {
      encoded += c;
    } else {
      const auto byte = static_cast<unsigned char>(c);
      encoded.append({'%', kDigits[byte >> 4], kDigits[byte & 15]});
    }
  }
  return encoded;
}
