// Which texts are URLs by the rules of RFC 2396, as Foundation applies them on macOS. Safe on any thread. Texts may be
// any bytes.
#pragma once

#include <string>

/// Whether `text` consists of characters that a URL may contain, with every "%" followed by two hexadecimal digits.
/// Spaces, quotes, control bytes and non-ASCII characters must be percent-encoded.
bool IsURLText(const std::string& text);

/// Whether `url` begins with "http://" or "https://", in any letter case, followed by a host.
bool IsWebURL(const std::string& url);
