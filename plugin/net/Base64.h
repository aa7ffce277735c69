// Standard base64 (RFC 4648, section 4) without line breaks.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// The bytes of `bytes` in base64, padded with "=". Cannot fail; safe on any thread.
std::string Base64Encode(std::string_view bytes);

/// Adds the same to the end of `result`, without a copy of it elsewhere.
void Base64Append(std::string_view bytes, std::string& result);

/// How many characters `byteCount` bytes become.
std::size_t Base64Length(std::size_t byteCount);
