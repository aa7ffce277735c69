// Runs the tree of a formula: names, operators and calls.
#include "calc/Evaluator.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "calc/Errors.h"
#include "calc/Operators.h"
#include "calc/Parser.h"
#include "calc/StackGuard.h"
#include "calc/Temporarily.h"

namespace calc {
namespace {

const Value* FirstError(std::span<const Value> values) {
  const auto found = std::find_if(values.begin(), values.end(), [](const Value& value) { return value.IsError(); });
  return found == values.end() ? nullptr : &*found;
}

Value CheckLength(const Value& value) {
  const bool tooLong = value.type() == Type::kText && value.AsText().size() > kMaxTextLength;
  return tooLong ? Value::OfError(errors::kOutOfRange) : value;
}

}  // namespace

Value Evaluator::Run(const Node& node) {
  if (StackLeft() < kStackReserve) throw RecursionTooDeep();
  if (cancelFlag_ != nullptr && cancelFlag_->load(std::memory_order_relaxed) != 0) throw Cancelled();
  return std::visit(*this, node.content);
}

std::vector<Value> Evaluator::RunAll(const Nodes& nodes) {
  std::vector<Value> values;
  values.reserve(nodes.size());
  for (const Node& node : nodes) values.push_back(Run(node));
  return values;
}

Value Evaluator::RunFormula(const Formula& formula, std::vector<Value> slots) {
  if (depth_ > recursionLimit_) throw RecursionTooDeep();
  slots.resize(static_cast<size_t>(formula.slotCount));
  const Temporarily<std::vector<Value>*> inScope(slots_, &slots);
  const Temporarily deeper(depth_, depth_ + 1);
  return Run(formula.root);
}

int Evaluator::EvaluateText(std::u16string_view source, Value& result) {
  Formula formula;
  if (const int error = Parse(source, environment_, {}, formula)) return error;
  result = RunFormula(formula, {});
  return 0;
}

int Evaluator::RunRepetition(const Repetition& repetition) {
  if (!repetition) return 1;
  const long long number = Run(*repetition).AsNumber().ToInteger();
  return static_cast<int>(std::clamp<long long>(number, 1, std::numeric_limits<int>::max()));
}

void Evaluator::Assign(const std::vector<Assignment>& assignments) {
  for (const Assignment& assignment : assignments) {
    Value value = Run(assignment.value);
    if (const auto* local = std::get_if<LocalName>(&assignment.target)) {
      (*slots_)[static_cast<size_t>(local->slot)] = std::move(value);
      continue;
    }
    const Variable& variable = std::get<Variable>(assignment.target);
    const int repetition = RunRepetition(variable.repetition);
    Variables& variables = variable.isGlobal ? environment_.Globals() : environment_.Locals();
    variables[{variable.name, repetition}] = std::move(value);
  }
}

Value Evaluator::operator()(const Literal& literal) { return literal.value; }

Value Evaluator::operator()(const LocalName& name) { return (*slots_)[static_cast<size_t>(name.slot)].AsKept(); }

Value Evaluator::operator()(const Variable& variable) {
  const int repetition = RunRepetition(variable.repetition);
  const Variables& variables = variable.isGlobal ? environment_.Globals() : environment_.Locals();
  const auto found = variables.find({variable.name, repetition});
  return found == variables.end() ? Value() : found->second.AsKept();
}

Value Evaluator::operator()(const FieldName& name) {
  const int repetition = RunRepetition(name.repetition);
  if (auto value = environment_.Field(name.occurrence, name.field, repetition)) return *value;
  environment_.ReportUnknownName(name.occurrence.empty() ? name.field : name.occurrence + u"::" + name.field);
  return Value::OfError(errors::kFieldMissing);
}

Value Evaluator::operator()(const Prefixed& prefixed) {
  Value value = Run(*prefixed.operand);
  for (auto op = prefixed.operators.rbegin(); op != prefixed.operators.rend(); ++op) value = ApplyPrefix(*op, value);
  return value;
}

// Both sides of `and` and `or` are always evaluated.
Value Evaluator::operator()(const Chain& chain) {
  if (chain.links.front().op == Operator::kConcatenate) {
    std::vector<Value> pieces{Run(*chain.first)};
    for (const Link& link : chain.links) pieces.push_back(Run(link.operand));
    return Concatenate(pieces);
  }
  Value value = Run(*chain.first);
  for (const Link& link : chain.links) value = Apply(link.op, value, Run(link.operand), precision_);
  return value;
}

Value Evaluator::operator()(const GetCall& call) {
  return environment_.Get(call.parameter).value_or(Value::OfError(errors::kInvalidGetParameter));
}

Value Evaluator::operator()(const LetCall& call) {
  Assign(call.assignments);
  return Run(*call.result);
}

Value Evaluator::operator()(const WhileCall& call) {
  Assign(call.initial);
  for (int round = 0;; ++round) {
    const Value condition = Run(*call.condition);
    // An error counts as true and might never become false.
    if (condition.IsError()) return condition;
    if (!condition.AsBoolean()) break;
    if (round >= recursionLimit_) return Value::OfError(errors::kTooManyRounds);
    Assign(call.logic);
  }
  return Run(*call.result);
}

Value Evaluator::operator()(const Call<Builtin>& call) {
  const std::vector<Value> arguments = RunAll(call.arguments);
  if (const Value* error = FirstError(arguments); error != nullptr && !call.function->takesErrors) return *error;
  return CheckLength(call.function->call(arguments));
}

Value Evaluator::operator()(const Call<ControlFunction>& call) { return (this->*call.function->run)(call.arguments); }

Value Evaluator::operator()(const Call<HostFunction>& call) {
  const std::vector<Value> arguments = RunAll(call.arguments);
  if (const Value* error = FirstError(arguments)) return *error;
  return call.function->call(arguments);
}

Value Evaluator::operator()(const Call<CustomFunction>& call) {
  std::vector<Value> arguments = RunAll(call.arguments);
  const ParsedFunction& parsed = ParsedFormOf(*call.function);
  return parsed.error != 0 ? Value::OfError(parsed.error) : RunFormula(parsed.formula, std::move(arguments));
}

const Evaluator::ParsedFunction& Evaluator::ParsedFormOf(const CustomFunction& function) {
  const auto [entry, isNew] = parsed_.try_emplace(&function);
  ParsedFunction& parsed = entry->second;
  if (isNew) parsed.error = Parse(function.formula, environment_, function.parameters, parsed.formula);
  return parsed;
}

}  // namespace calc
