// Decimal numbers as FileMaker calculates with them: no binary rounding, long integers exact.
#pragma once

#include <gmpxx.h>

#include <compare>
#include <optional>
#include <string>
#include <string_view>

namespace calc {

/// An exact decimal: an integer of any length times a power of ten. Addition, subtraction and multiplication are exact
/// up to FileMaker's 400 significant digits; division and the irrational functions are rounded.
class Number {
 public:
  Number() = default;
  Number(long long value);  // NOLINT: integers are numbers
  static Number FromDouble(double value);

  /// Reads a literal as formulas write it ("12", ".5", "1e3"); nothing else may stand around it. nullopt if it is none.
  static std::optional<Number> Parse(std::u16string_view literal);

  /// FileMaker's text form: ".25", "-.5", "0", no trailing zeros, no separators.
  std::u16string ToText() const;
  double ToDouble() const;
  /// Truncates toward zero; values out of range give the nearest limit.
  long long ToInteger() const;

  int Sign() const;
  Number operator-() const;
  Number operator+(const Number& other) const;
  Number operator-(const Number& other) const;
  Number operator*(const Number& other) const;
  /// nullopt when `divisor` is zero.
  std::optional<Number> DividedBy(const Number& divisor) const;
  /// nullopt when the power does not exist (zero to a negative power, a root of a negative number) or is too large.
  std::optional<Number> Power(const Number& exponent) const;

  /// Halves go away from zero; negative places round tens, hundreds...
  Number Rounded(int places) const;
  Number Truncated(int places) const;
  Number Floor() const;
  Number Ceiling() const;

  std::strong_ordering operator<=>(const Number& other) const;
  bool operator==(const Number& other) const;

 private:
  Number(mpz_class digits, int scale);

  mpz_class digits_;  // the value is digits_ * 10^-scale_
  int scale_ = 0;
};

}  // namespace calc
