// Standard base64 (RFC 4648, section 4) without line breaks.
#pragma once

#include <string>

/// The bytes of `bytes` in base64, padded with "=". Cannot fail; safe on any thread.
std::string Base64Encode(const std::string& bytes);
