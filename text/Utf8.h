// UTF-8 validity. Safe on any thread.
#pragma once

#include <string>
#include <string_view>

/// True when `bytes` is well-formed UTF-8: no overlong forms, no surrogates, nothing beyond U+10FFFF.
bool IsUtf8(std::string_view bytes);

/// `bytes` with U+FFFD in place of every byte that is not part of a well-formed character.
std::string ReplaceIllFormedUtf8(std::string_view bytes);
