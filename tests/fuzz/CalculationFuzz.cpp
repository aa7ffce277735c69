// Formulas from outside: whatever the text, the engine ends with a value or with one of FileMaker's error numbers.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>

#include "sim/calc/Engine.h"
#include "sim/calc/Unicode.h"

namespace {

// One field that always exists, one host function and one custom function.
class FuzzEnvironment : public calc::Environment {
 public:
  std::optional<calc::Value> Get(std::u16string_view) override { return calc::Value::OfText(u"Orders"); }
  std::optional<calc::Value> Field(std::u16string_view occurrence, std::u16string_view field, int) override {
    if (field != u"Line Total") return std::nullopt;
    return calc::Value::OfText(std::u16string(occurrence));
  }
  const calc::HostFunction* FindHostFunction(std::u16string_view name) override {
    return calc::EqualIgnoringCase(name, host_.name) ? &host_ : nullptr;
  }
  const calc::CustomFunction* FindCustomFunction(std::u16string_view name) override {
    return calc::EqualIgnoringCase(name, custom_.name) ? &custom_ : nullptr;
  }
  calc::Variables& Locals() override { return variables_; }
  calc::Variables& Globals() override { return variables_; }

 private:
  calc::HostFunction host_{u"Push", 0, 2,
                           [](auto arguments) { return arguments.empty() ? calc::Value() : arguments[0]; }};
  calc::CustomFunction custom_{u"Twice", {u"n"}, u"n & n"};
  calc::Variables variables_;
};

// Fifty rounds and levels instead of fifty thousand, which end too, but not while anyone waits.
std::u16string WithSmallLimit(const std::u16string& formula) { return u"SetRecursion ( " + formula + u"\r; 50 )"; }

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::u16string formula = calc::ToUtf16({reinterpret_cast<const char*>(data), size});
  if (calc::FoldCase(formula).find(u"setrecursion") != std::u16string::npos) return 0;
  FuzzEnvironment environment;
  const int syntaxError = calc::Check(formula, environment);
  calc::Value result;
  const int error = calc::Evaluate(syntaxError != 0 ? formula : WithSmallLimit(formula), environment, result);
  if (syntaxError != 0 && (error != syntaxError || !result.AsText().empty())) std::abort();
  if (syntaxError == 0 && result.IsError() && result.AsText() != u"?") std::abort();
  return 0;
}
