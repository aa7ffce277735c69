// The calculation engine: FileMaker's expression language over an Environment.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "calc/Environment.h"
#include "calc/Value.h"

namespace calc {

/// Evaluates `formula`. Returns 0 and the value; a formula that does not parse gives FileMaker's error number and
/// leaves `result` empty; one that fails while running gives the number and the value "?". An error that comes out of a
/// variable no longer has a number: 0 and the value "?". Endless recursion and nesting end with an error, never with
/// the stack. A cancelled formula ends with error 1.
int Evaluate(std::u16string_view formula, Environment& environment, Value& result);

/// 0 when `formula` parses in `environment`, else the error number.
int Check(std::u16string_view formula, Environment& environment);

/// The names of the engine's own functions as FileMaker spells them, sorted; for completion and listings.
std::vector<std::u16string> FunctionNames();

}  // namespace calc
