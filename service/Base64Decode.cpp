#include "Base64Decode.h"

#include <array>
#include <cstdint>

namespace service {
namespace {

constexpr std::uint8_t kNone = 255;

constexpr std::array<std::uint8_t, 256> Values() {
  constexpr std::string_view kAlphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::array<std::uint8_t, 256> values{};
  for (auto& value : values) value = kNone;
  for (std::size_t i = 0; i < kAlphabet.size(); ++i) {
    values[static_cast<unsigned char>(kAlphabet[i])] = static_cast<std::uint8_t>(i);
  }
  return values;
}

constexpr auto kValues = Values();

}  // namespace

std::optional<std::string> DecodeBase64(std::string_view text) {
  if (text.size() % 4 != 0) return std::nullopt;
  for (int padding = 0; padding < 2 && !text.empty() && text.back() == '='; ++padding) text.remove_suffix(1);

  std::string bytes;
  bytes.reserve(text.size() / 4 * 3 + 2);
  std::uint32_t bits = 0;
  int count = 0;
  for (const unsigned char character : text) {
    const std::uint8_t value = kValues[character];
    if (value == kNone) return std::nullopt;
    bits = bits << 6 | value;
    count += 6;
    if (count < 8) continue;
    count -= 8;
    bytes.push_back(static_cast<char>(bits >> count));
  }
  const bool leftoversAreZero = (bits & ((1u << count) - 1)) == 0;
  return leftoversAreZero ? std::optional(std::move(bytes)) : std::nullopt;
}

}  // namespace service
