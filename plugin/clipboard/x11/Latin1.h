// The X Window System's older text encoding. Safe on any thread.
#pragma once

#include <string>
#include <string_view>

namespace x11 {

std::string Latin1ToUtf8(std::string_view latin1);

/// A character that Latin-1 does not have becomes "?".
std::string Utf8ToLatin1(std::string_view utf8);

}  // namespace x11
