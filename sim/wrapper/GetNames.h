// The Get functions by the numbers that plug-ins use for them.
#pragma once

#include <string_view>

namespace wrapper {

/// "FileName" for 1005; empty when no Get function has that number.
std::u16string_view GetFunctionName(int number);

}  // namespace wrapper
