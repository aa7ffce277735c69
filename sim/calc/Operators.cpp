// The operators on values.
#include "calc/Operators.h"

#include <utility>

#include "calc/Errors.h"
#include "calc/Functions.h"
#include "calc/Unicode.h"

namespace calc {
namespace {

bool IsNumeric(const Value& value) {
  return !value.IsError() && value.type() != Type::kText && value.type() != Type::kContainer;
}

Value Divide(const Number& left, const Number& right, int precision) {
  const auto quotient = left.DividedBy(right, precision);
  return quotient ? NumberValue(*quotient) : Value::OfError(errors::kDivisionByZero);
}

Value Power(const Number& base, const Number& exponent) {
  const auto power = base.Power(exponent);
  return power ? NumberValue(*power) : Value::OfError(errors::kOutOfRange);
}

}  // namespace

Value NumberValue(const Number& number) {
  return number.InRange() ? Value::OfNumber(number) : Value::OfError(errors::kOutOfRange);
}

int CompareValues(const Value& left, const Value& right) {
  if (!IsNumeric(left) || !IsNumeric(right)) return CompareTexts(left.AsText(), right.AsText());
  const auto order = left.AsNumber() <=> right.AsNumber();
  return order < 0 ? -1 : order > 0 ? 1 : 0;
}

Value Apply(Operator op, const Value& left, const Value& right, int precision) {
  switch (op) {
    case Operator::kEqual:
      return Value::OfBoolean(CompareValues(left, right) == 0);
    case Operator::kNotEqual:
      return Value::OfBoolean(CompareValues(left, right) != 0);
    case Operator::kLess:
      return Value::OfBoolean(CompareValues(left, right) < 0);
    case Operator::kLessOrEqual:
      return Value::OfBoolean(CompareValues(left, right) <= 0);
    case Operator::kGreater:
      return Value::OfBoolean(CompareValues(left, right) > 0);
    case Operator::kGreaterOrEqual:
      return Value::OfBoolean(CompareValues(left, right) >= 0);
    case Operator::kAnd:
      return Value::OfBoolean(left.AsBoolean() && right.AsBoolean());
    case Operator::kOr:
      return Value::OfBoolean(left.AsBoolean() || right.AsBoolean());
    case Operator::kXor:
      return Value::OfBoolean(left.AsBoolean() != right.AsBoolean());
    default:
      break;
  }
  // Comparisons and logic treat an error as its text "?"; everywhere else the result is that error.
  if (left.IsError()) return left;
  if (right.IsError()) return right;
  switch (op) {
    case Operator::kAdd:
      return NumberValue(left.AsNumber() + right.AsNumber());
    case Operator::kSubtract:
      return NumberValue(left.AsNumber() - right.AsNumber());
    case Operator::kMultiply:
      return NumberValue(left.AsNumber() * right.AsNumber());
    case Operator::kDivide:
      return Divide(left.AsNumber(), right.AsNumber(), precision);
    default:
      return Power(left.AsNumber(), right.AsNumber());
  }
}

Value Concatenate(std::span<const Value> values) {
  size_t length = 0;
  for (const Value& value : values) {
    if (value.IsError()) return value;
    length += value.AsText().size();
  }
  if (length > kMaxTextLength) return Value::OfError(errors::kOutOfRange);
  std::u16string text;
  text.reserve(length);
  for (const Value& value : values) text += value.AsText();
  return Value::OfText(std::move(text));
}

Value ApplyPrefix(Operator op, const Value& operand) {
  if (op == Operator::kNot) return Value::OfBoolean(!operand.AsBoolean());
  if (operand.IsError()) return operand;
  return NumberValue(op == Operator::kSubtract ? -operand.AsNumber() : operand.AsNumber());
}

}  // namespace calc
