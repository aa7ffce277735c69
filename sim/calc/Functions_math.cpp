// Roots, logarithms, angles and factorials.
#include <cmath>

#include "sim/calc/Errors.h"
#include "sim/calc/Functions.h"
#include "sim/calc/Operators.h"

namespace calc {
namespace {

// A real function where it is defined; everything else is an error.
template <long double (*function)(long double)>
Value Real(Arguments arguments) {
  const long double result = function(arguments[0].AsNumber().ToReal());
  return std::isfinite(result) ? NumberValue(Number::FromReal(result)) : Value::OfError(errors::kBadArgument);
}

long double Pi() { return std::acos(-1.0L); }
long double DegreesOf(long double radians) { return radians * 180 / Pi(); }
long double RadiansOf(long double degrees) { return degrees * Pi() / 180; }

Value PiValue(Arguments) { return Value::OfNumber(Number::FromReal(Pi())); }

Value Factorial(Arguments arguments) {
  const long long number = arguments[0].AsNumber().ToInteger();
  long long factors = arguments.size() > 1 ? arguments[1].AsNumber().ToInteger() : number;
  if (number < 0 || factors < 0) return Value::OfError(errors::kBadArgument);
  Number result = 1;
  for (long long factor = number; factor > 1 && factors > 0; --factor, --factors) {
    result = result * factor;
    if (!result.InRange()) return Value::OfError(errors::kOutOfRange);
  }
  return Value::OfNumber(result);
}

constexpr Builtin kFunctions[] = {
    {u"Acos", {1, 1}, Real<std::acos>},
    {u"Asin", {1, 1}, Real<std::asin>},
    {u"Atan", {1, 1}, Real<std::atan>},
    {u"Cos", {1, 1}, Real<std::cos>},
    {u"Degrees", {1, 1}, Real<DegreesOf>},
    {u"Exp", {1, 1}, Real<std::exp>},
    {u"Factorial", {1, 2}, Factorial},
    {u"Lg", {1, 1}, Real<std::log2>},
    {u"Ln", {1, 1}, Real<std::log>},
    {u"Log", {1, 1}, Real<std::log10>},
    {u"Pi", {0, 0}, PiValue},
    {u"Radians", {1, 1}, Real<RadiansOf>},
    {u"Sin", {1, 1}, Real<std::sin>},
    {u"Sqrt", {1, 1}, Real<std::sqrt>},
    {u"Tan", {1, 1}, Real<std::tan>},
};

}  // namespace

std::span<const Builtin> MathFunctions() { return kFunctions; }

}  // namespace calc
