// Formulas from outside: whatever the text, the engine ends with a value or with one of FileMaker's error numbers.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "tests/calc/TestEnvironment.h"

namespace {

// Fifty rounds and levels instead of fifty thousand, which end too, but not while anyone waits.
std::u16string WithSmallLimit(const std::u16string& formula) { return u"SetRecursion ( " + formula + u"\r; 50 )"; }

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::u16string formula = calc::ToUtf16({reinterpret_cast<const char*>(data), size});
  if (calc::FoldCase(formula).find(u"setrecursion") != std::u16string::npos) return 0;
  TestEnvironment environment;
  environment.hostFunctions = {
      {u"Push", 0, 2, [](auto arguments) { return arguments.empty() ? calc::Value() : arguments[0]; }}};
  environment.fields[u"::Line Total"] = {u"Orders"};
  environment.customFunctions = {{u"Twice", {u"n"}, u"n & n"}};
  const int syntaxError = calc::Check(formula, environment);
  calc::Value result;
  const int error = calc::Evaluate(syntaxError != 0 ? formula : WithSmallLimit(formula), environment, result);
  if (syntaxError != 0 && (error != syntaxError || !result.AsText().empty())) std::abort();
  if (syntaxError == 0 && result.IsError() && result.AsText() != u"?") std::abort();
  return 0;
}
