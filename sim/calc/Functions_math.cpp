// Roots, logarithms, angles and factorials.
#include "calc/Errors.h"
#include "calc/Functions.h"
#include "calc/Operators.h"

namespace calc {
namespace {

// A real function; an error outside its domain.
template <RealFunction function>
Value Real(Arguments arguments) {
  const auto result = arguments[0].AsNumber().Apply(function);
  return result ? NumberValue(*result) : Value::OfError(errors::kBadArgument);
}

int Degrees(mpfr_ptr result, mpfr_srcptr radians, mpfr_rnd_t rounding) {
  mpfr_const_pi(result, rounding);
  mpfr_div(result, radians, result, rounding);
  return mpfr_mul_ui(result, result, 180, rounding);
}

int Radians(mpfr_ptr result, mpfr_srcptr degrees, mpfr_rnd_t rounding) {
  mpfr_const_pi(result, rounding);
  mpfr_mul(result, degrees, result, rounding);
  return mpfr_div_ui(result, result, 180, rounding);
}

Value Pi(Arguments) { return NumberValue(*Number(-1).Apply(mpfr_acos)); }

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

constexpr Builtin kMathFunctions[] = {
    {u"Acos", {1, 1}, Real<mpfr_acos>},
    {u"Asin", {1, 1}, Real<mpfr_asin>},
    {u"Atan", {1, 1}, Real<mpfr_atan>},
    {u"Cos", {1, 1}, Real<mpfr_cos>},
    {u"Degrees", {1, 1}, Real<Degrees>},
    {u"Exp", {1, 1}, Real<mpfr_exp>},
    {u"Factorial", {1, 2}, Factorial},
    {u"Lg", {1, 1}, Real<mpfr_log2>},
    {u"Ln", {1, 1}, Real<mpfr_log>},
    {u"Log", {1, 1}, Real<mpfr_log10>},
    {u"Pi", {0, 0}, Pi},
    {u"Radians", {1, 1}, Real<Radians>},
    {u"Sin", {1, 1}, Real<mpfr_sin>},
    {u"Sqrt", {1, 1}, Real<mpfr_sqrt>},
    {u"Tan", {1, 1}, Real<mpfr_tan>},
};

}  // namespace

std::span<const Builtin> MathFunctions() { return kMathFunctions; }

}  // namespace calc
