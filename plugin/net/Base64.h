// Standard base64 (RFC 4648, section 4) without line breaks. Safe on any thread.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// `bytes` in base64, padded with "=".
std::string Base64Encode(std::string_view bytes);
/// Appends `bytes` in base64 to `result`, without a temporary copy.
void Base64Append(std::string_view bytes, std::string& result);

/// The length of `byteCount` bytes in base64.
std::size_t Base64Length(std::size_t byteCount);
