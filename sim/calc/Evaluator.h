// Runs the tree of a formula.
#pragma once

#include <map>
#include <span>
#include <string_view>
#include <vector>

#include "calc/Environment.h"
#include "calc/Functions.h"
#include "calc/Syntax.h"

namespace calc {

/// Thrown when recursion is too deep. It ends the whole calculation; otherwise a function that calls itself twice would
/// visit every branch of its endless tree.
struct RecursionTooDeep {};

/// Thrown once the environment's cancel flag is set.
struct Cancelled {};

class Evaluator {
 public:
  explicit Evaluator(Environment& environment) : environment_(environment), cancelFlag_(environment.CancelFlag()) {}

  /// Parses and runs `source`, which sees no local names. Returns the number of the syntax error, or 0 and the value,
  /// which may be an error value. Throws RecursionTooDeep and Cancelled.
  int EvaluateText(std::u16string_view source, Value& result);

  // Functions that decide which arguments are evaluated, and in which environment.
  using Nodes = std::vector<Node>;
  Value If(const Nodes& arguments);
  Value Case(const Nodes& arguments);
  Value Choose(const Nodes& arguments);
  Value EvaluateFormula(const Nodes& arguments);
  Value EvaluationError(const Nodes& arguments);
  Value IsValidExpression(const Nodes& arguments);
  Value GetField(const Nodes& arguments);
  Value GetFieldName(const Nodes& arguments);
  Value SetPrecision(const Nodes& arguments);
  Value SetRecursion(const Nodes& arguments);

  // One for each kind of node.
  Value operator()(const Literal& literal);
  Value operator()(const LocalName& name);
  Value operator()(const Variable& variable);
  Value operator()(const FieldName& name);
  Value operator()(const Prefixed& prefixed);
  Value operator()(const Chain& chain);
  Value operator()(const GetCall& call);
  Value operator()(const LetCall& call);
  Value operator()(const WhileCall& call);
  Value operator()(const Call<Builtin>& call);
  Value operator()(const Call<ControlFunction>& call);
  Value operator()(const Call<CustomFunction>& call);
  Value operator()(const Call<HostFunction>& call);

 private:
  /// A custom function's formula, parsed when it is first called.
  struct ParsedFunction {
    int error = 0;
    Formula formula;
  };

  Value Run(const Node& node);
  std::vector<Value> RunAll(const Nodes& nodes);
  /// Runs `formula` with `slots`, which need not be complete, as its local names.
  Value RunFormula(const Formula& formula, std::vector<Value> slots);
  int RunRepetition(const Repetition& repetition);
  void Assign(const std::vector<Assignment>& assignments);
  const ParsedFunction& ParsedFormOf(const CustomFunction& function);

  Environment& environment_;
  const std::atomic<int>* cancelFlag_;
  std::vector<Value>* slots_ = nullptr;  // of the formula that runs
  std::map<const CustomFunction*, ParsedFunction> parsed_;
  int precision_ = kDivisionPlaces;
  int recursionLimit_ = kDefaultRecursionLimit;
  int depth_ = 0;

  static constexpr int kDefaultRecursionLimit = 50000;
};

struct ControlFunction {
  std::u16string_view name;
  Signature signature;
  Value (Evaluator::*run)(const Evaluator::Nodes& arguments) = nullptr;
};

std::span<const ControlFunction> ControlFunctions();

}  // namespace calc
