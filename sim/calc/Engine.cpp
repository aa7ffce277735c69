// The engine's entry points.
#include "calc/Engine.h"

#include "calc/Errors.h"
#include "calc/Evaluator.h"
#include "calc/Parser.h"

namespace calc {

int Evaluate(std::u16string_view formula, Environment& environment, Value& result) {
  result = Value();
  try {
    const int error = Evaluator(environment).EvaluateText(formula, result);
    return error != 0 ? error : result.error();
  } catch (const RecursionTooDeep&) {
    result = Value::OfError(errors::kTooDeep);
    return errors::kTooDeep;
  } catch (const Cancelled&) {
    result = Value::OfError(errors::kCancelled);
    return errors::kCancelled;
  }
}

int Check(std::u16string_view formula, Environment& environment) {
  Formula parsed;
  return Parse(formula, environment, {}, parsed);
}

}  // namespace calc
