#include <sodium.h>

#include <stdexcept>

#include "system/Cryptography.h"

namespace service {
namespace {

const unsigned char* Bytes(std::string_view text) { return reinterpret_cast<const unsigned char*>(text.data()); }

}  // namespace

std::string RandomKey() {
  if (sodium_init() < 0) throw std::runtime_error("the system's random source is not available");
  std::array<unsigned char, 32> bytes{};
  randombytes_buf(bytes.data(), bytes.size());
  constexpr int kVariant = sodium_base64_VARIANT_URLSAFE_NO_PADDING;
  std::array<char, sodium_base64_ENCODED_LEN(32, sodium_base64_VARIANT_URLSAFE_NO_PADDING)> text{};
  return sodium_bin2base64(text.data(), text.size(), bytes.data(), bytes.size(), kVariant);
}

bool IsSameSecret(std::string_view a, std::string_view b) {
  return a.size() == b.size() && sodium_memcmp(a.data(), b.data(), a.size()) == 0;
}

ContentHash HashOf(std::string_view bytes) {
  ContentHash hash{};
  crypto_hash_sha256(hash.data(), Bytes(bytes), bytes.size());
  return hash;
}

std::optional<std::string> DecodeBase64(std::string_view text) {
  std::string bytes(text.size() / 4 * 3, '\0');
  std::size_t size = 0;
  if (sodium_base642bin(reinterpret_cast<unsigned char*>(bytes.data()), bytes.size(), text.data(), text.size(), nullptr,
                        &size, nullptr, sodium_base64_VARIANT_ORIGINAL) != 0) {
    return std::nullopt;
  }
  bytes.resize(size);
  return bytes;
}

}  // namespace service
