// The functions that decide which arguments are evaluated, and in which environment.
#include <algorithm>
#include <limits>
#include <utility>

#include "calc/Errors.h"
#include "calc/Evaluator.h"
#include "calc/Parser.h"
#include "calc/Temporarily.h"

namespace calc {
namespace {

constexpr long long kMaxPrecision = 400;

constexpr ControlFunction kControlFunctions[] = {
    {u"If", {2, 3}, &Evaluator::If},
    {u"Case", {2, kAnyNumber}, &Evaluator::Case},
    {u"Choose", {2, kAnyNumber}, &Evaluator::Choose},
    {u"Evaluate", {1, 2, kAnyNumber}, &Evaluator::EvaluateFormula},
    {u"EvaluationError", {1, 1}, &Evaluator::EvaluationError},
    {u"IsValidExpression", {1, 1}, &Evaluator::IsValidExpression},
    {u"GetField", {1, 1}, &Evaluator::GetField},
    {u"GetFieldName", {1, 1}, &Evaluator::GetFieldName},
    {u"SetPrecision", {2, 2}, &Evaluator::SetPrecision},
    {u"SetRecursion", {2, 2}, &Evaluator::SetRecursion},
};

}  // namespace

std::span<const ControlFunction> ControlFunctions() { return kControlFunctions; }

Value Evaluator::If(const Nodes& arguments) {
  if (Run(arguments[0]).AsBoolean()) return Run(arguments[1]);
  return arguments.size() > 2 ? Run(arguments[2]) : Value();
}

Value Evaluator::Case(const Nodes& arguments) {
  size_t at = 0;
  for (; at + 1 < arguments.size(); at += 2) {
    if (Run(arguments[at]).AsBoolean()) return Run(arguments[at + 1]);
  }
  return at < arguments.size() ? Run(arguments[at]) : Value();
}

Value Evaluator::Choose(const Nodes& arguments) {
  const Value test = Run(arguments[0]);
  if (test.IsError()) return test;
  const long long choice = test.AsNumber().ToInteger();
  const auto results = static_cast<long long>(arguments.size()) - 1;
  return choice >= 0 && choice < results ? Run(arguments[static_cast<size_t>(choice) + 1]) : Value();
}

// The optional fields only determine when a stored calculation is re-evaluated.
Value Evaluator::EvaluateFormula(const Nodes& arguments) {
  const Value source = Run(arguments[0]);
  if (source.IsError()) return source;
  Value result;
  const int error = EvaluateText(source.AsText(), result);
  return error != 0 ? Value::OfError(error) : result;
}

Value Evaluator::EvaluationError(const Nodes& arguments) { return Value::OfNumber(Run(arguments[0]).error()); }

Value Evaluator::IsValidExpression(const Nodes& arguments) {
  Formula formula;
  return Value::OfBoolean(Parse(Run(arguments[0]).AsText(), environment_, {}, formula) == 0);
}

Value Evaluator::GetField(const Nodes& arguments) {
  const Value name = Run(arguments[0]);
  if (name.IsError()) return name;
  Formula formula;
  const bool parses = Parse(name.AsText(), environment_, {}, formula) == 0;
  if (!parses || !std::holds_alternative<FieldName>(formula.root.content)) return Value::OfError(errors::kFieldMissing);
  return RunFormula(formula, {});
}

Value Evaluator::GetFieldName(const Nodes& arguments) {
  const auto* field = std::get_if<FieldName>(&arguments[0].content);
  if (field == nullptr) return Value::OfError(errors::kFieldRequired);
  std::u16string name = environment_.FieldName(field->occurrence, field->field);
  return name.empty() ? Run(arguments[0]) : Value::OfText(std::move(name));
}

Value Evaluator::SetPrecision(const Nodes& arguments) {
  const long long places = Run(arguments[1]).AsNumber().ToInteger();
  const Temporarily precision(precision_, static_cast<int>(std::clamp<long long>(places, 0, kMaxPrecision)));
  return Run(arguments[0]);
}

Value Evaluator::SetRecursion(const Nodes& arguments) {
  const long long limit = Run(arguments[1]).AsNumber().ToInteger();
  const auto allowed = std::clamp<long long>(limit, 0, std::numeric_limits<int>::max());
  const Temporarily recursionLimit(recursionLimit_, static_cast<int>(allowed));
  return Run(arguments[0]);
}

}  // namespace calc
