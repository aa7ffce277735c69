// Rounding, division with remainder, and simple numeric functions.
#include <algorithm>
#include <optional>
#include <random>

#include "calc/Errors.h"
#include "calc/Functions.h"
#include "calc/Operators.h"

namespace calc {
namespace {

constexpr int kPlacesLimit = 1000;
constexpr int kRandomDigits = 16;

Number At(Arguments arguments, size_t index) { return arguments[index].AsNumber(); }

int Places(Arguments arguments) {
  return static_cast<int>(std::clamp<long long>(At(arguments, 1).ToInteger(), -kPlacesLimit, kPlacesLimit));
}

Value Abs(Arguments arguments) {
  const Number number = At(arguments, 0);
  return Value::OfNumber(number.Sign() < 0 ? -number : number);
}

Value Sign(Arguments arguments) { return Value::OfNumber(At(arguments, 0).Sign()); }
Value Int(Arguments arguments) { return Value::OfNumber(At(arguments, 0).Truncated(0)); }
Value Floor(Arguments arguments) { return Value::OfNumber(At(arguments, 0).Floor()); }
Value Ceiling(Arguments arguments) { return Value::OfNumber(At(arguments, 0).Ceiling()); }
Value Round(Arguments arguments) { return NumberValue(At(arguments, 0).Rounded(Places(arguments))); }
Value Truncate(Arguments arguments) { return Value::OfNumber(At(arguments, 0).Truncated(Places(arguments))); }

Value Div(Arguments arguments) {
  const auto quotient = At(arguments, 0).FloorDividedBy(At(arguments, 1));
  return quotient ? NumberValue(*quotient) : Value::OfError(errors::kDivisionByZero);
}

// The remainder has the sign of the divisor.
Value Mod(Arguments arguments) {
  const Number divisor = At(arguments, 1);
  const auto quotient = At(arguments, 0).FloorDividedBy(divisor);
  if (!quotient) return Value::OfError(errors::kDivisionByZero);
  return NumberValue(At(arguments, 0) - *quotient * divisor);
}

Value Random(Arguments) {
  thread_local std::mt19937_64 engine{std::random_device()()};
  const Number range = *Number(10).Power(kRandomDigits);
  const long long digits = std::uniform_int_distribution<long long>(1, range.ToInteger() - 1)(engine);
  return Value::OfNumber(*Number(digits).DividedBy(range));
}

Value True(Arguments) { return Value::OfBoolean(true); }
Value False(Arguments) { return Value::OfBoolean(false); }

constexpr Builtin kNumberFunctions[] = {
    {u"Abs", {1, 1}, Abs},     {u"Ceiling", {1, 1}, Ceiling}, {u"Div", {2, 2}, Div},   {u"False", {0, 0}, False},
    {u"Floor", {1, 1}, Floor}, {u"Int", {1, 1}, Int},         {u"Mod", {2, 2}, Mod},   {u"Random", {0, 0}, Random},
    {u"Round", {2, 2}, Round}, {u"Sign", {1, 1}, Sign},       {u"True", {0, 0}, True}, {u"Truncate", {2, 2}, Truncate},
};

}  // namespace

std::span<const Builtin> NumberFunctions() { return kNumberFunctions; }

}  // namespace calc
