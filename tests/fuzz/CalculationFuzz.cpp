// Any formula: the engine ends with a value or with one of FileMaker's error numbers.
#include "fuzz/Fuzz.h"
#include "sim/calc/TestEnvironment.h"

void Try(const std::string& input) {
  const std::u16string formula = calc::ToUtf16(input);
  if (calc::FoldCase(formula).find(u"setrecursion") != formula.npos) return;
  TestEnvironment environment;
  environment.hostFunctions = {
      {u"Push", 0, 2, [](auto arguments) { return arguments.empty() ? calc::Value() : arguments[0]; }}};
  environment.fields[u"::Line Total"] = {u"Orders"};
  environment.customFunctions = {{u"Twice", {u"n"}, u"n & n"}};
  calc::Value result;
  if (const int syntaxError = calc::Check(formula, environment)) {
    Check(calc::Evaluate(formula, environment, result) == syntaxError && result.AsText().empty());
    return;
  }
  // Fifty rounds and levels instead of fifty thousand, which would take too long.
  calc::Evaluate(u"SetRecursion ( " + formula + u"\r; 50 )", environment, result);
  Check(!result.IsError() || result.AsText() == u"?");
}
