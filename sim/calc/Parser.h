// Parses formulas into trees.
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "calc/Environment.h"
#include "calc/Syntax.h"

namespace calc {

/// Parses `source` and resolves its functions in `environment`, which must outlive the tree. The parameters of a custom
/// function take the first slots, in their order. Returns 0, or FileMaker's error number and leaves `formula`
/// undefined. Fields are checked when the formula runs.
int Parse(std::u16string_view source, Environment& environment, std::span<const std::u16string> parameters,
          Formula& formula);

}  // namespace calc
