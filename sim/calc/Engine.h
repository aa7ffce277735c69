// The calculation engine: FileMaker's expression language over an Environment.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "calc/Environment.h"
#include "calc/Value.h"

namespace calc {

/// Evaluates `formula`. Returns 0 and the value. On a syntax error, returns FileMaker's error number and leaves
/// `result` empty. On a runtime error, returns the number and the value "?". An error value read from a variable has no
/// number: the result is 0 and "?". Endless recursion and nesting return an error instead of overflowing the stack. A
/// cancelled formula returns error 1.
int Evaluate(std::u16string_view formula, Environment& environment, Value& result);

/// 0 when `formula` parses in `environment`, else the error number.
int Check(std::u16string_view formula, Environment& environment);

/// The names of the engine's own functions as FileMaker spells them, sorted; for completion and listings.
std::vector<std::u16string> FunctionNames();

}  // namespace calc
