// Which texts are URLs, by the rules of RFC 2396, which macOS applies before it makes a URL object.
#pragma once

#include <string>

/// Whether `text` has only the characters that a URL may have, with every "%" followed by two hexadecimal digits.
/// Blanks, quotes, control bytes and anything beyond ASCII must have been percent-encoded.
bool IsURLText(const std::string& text);

/// Whether `url` begins with "http://" or "https://", in any case, and goes on with a host.
bool IsWebURL(const std::string& url);
