// The tree of a parsed formula. Chains of operators are flat, so only brackets and calls make a tree deep.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "calc/Environment.h"
#include "calc/Value.h"

namespace calc {

enum class Operator {
  kAdd,
  kSubtract,
  kMultiply,
  kDivide,
  kPower,
  kConcatenate,
  kEqual,
  kNotEqual,
  kLess,
  kLessOrEqual,
  kGreater,
  kGreaterOrEqual,
  kAnd,
  kOr,
  kXor,
  kNot,
};

struct Assignment;
struct Builtin;
struct ControlFunction;
struct Link;
struct Node;

/// `expression [ repetition ]`; null without one.
using Repetition = std::unique_ptr<Node>;

struct Literal {
  Value value;
};

/// A name of Let or While, or a custom function's parameter: its place among the names of the formula.
struct LocalName {
  int slot = 0;
};

struct Variable {
  bool isGlobal = false;
  std::u16string name;  ///< folded, without dollar signs
  Repetition repetition;
};

struct FieldName {
  std::u16string occurrence;  ///< empty for a bare name
  std::u16string field;
  Repetition repetition;
};

/// `- + not operand`: the operators outermost first.
struct Prefixed {
  std::vector<Operator> operators;
  std::unique_ptr<Node> operand;
};

/// Operators of one level, applied from left to right.
struct Chain {
  std::unique_ptr<Node> first;
  std::vector<Link> links;
};

struct GetCall {
  std::u16string parameter;
};

template <typename Function>
struct Call {
  const Function* function = nullptr;
  std::vector<Node> arguments;
};

struct LetCall {
  std::vector<Assignment> assignments;
  std::unique_ptr<Node> result;
};

struct WhileCall {
  std::vector<Assignment> initial;
  std::unique_ptr<Node> condition;
  std::vector<Assignment> logic;
  std::unique_ptr<Node> result;
};

struct Node {
  std::variant<Literal, LocalName, Variable, FieldName, Prefixed, Chain, GetCall, LetCall, WhileCall, Call<Builtin>,
               Call<ControlFunction>, Call<CustomFunction>, Call<HostFunction>>
      content;
};

struct Link {
  Operator op = Operator::kAdd;
  Node operand;
};

struct Assignment {
  std::variant<LocalName, Variable> target;
  Node value;
};

struct Formula {
  Node root;
  int slotCount = 0;  ///< how many values its local names need
};

}  // namespace calc
