// What the service needs of the system's cryptography. Safe on any thread.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

namespace service {

/// 32 random bytes as 43 letters, digits, `-` and `_`. Throws std::runtime_error when the system has none.
std::string RandomKey();

/// True if both are equal. Takes the same time wherever two texts of the same length differ.
bool IsSameSecret(std::string_view a, std::string_view b);

using ContentHash = std::array<unsigned char, 32>;

/// SHA-256.
ContentHash HashOf(std::string_view bytes);

/// Decodes base64 with the standard alphabet, padding and no line endings; returns nothing for any other text.
std::optional<std::string> DecodeBase64(std::string_view text);

}  // namespace service
