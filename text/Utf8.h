// UTF-8 validity. Safe on any thread.
#pragma once

#include <string_view>

/// True when `bytes` is well-formed UTF-8: no overlong forms, no surrogates, nothing beyond U+10FFFF.
bool IsUtf8(std::string_view bytes);
