// FileMaker's decimal numbers: no binary rounding, and exact long integers.
#pragma once

#include <gmpxx.h>
#include <mpfr.h>

#include <compare>
#include <optional>
#include <string>
#include <string_view>

namespace calc {

/// Decimal places that a division keeps by default.
inline constexpr int kDivisionPlaces = 16;

/// An irrational function of MPFR.
using RealFunction = int (*)(mpfr_ptr result, mpfr_srcptr argument, mpfr_rnd_t rounding);

/// An exact decimal: an integer of any length times a power of ten. Addition, subtraction and multiplication are exact
/// up to FileMaker's 400 significant digits; division and the irrational functions are rounded. Numbers below 10^-400
/// are zero, and numbers from 10^400 on are out of FileMaker's range.
class Number {
 public:
  Number() = default;
  Number(long long value);  // NOLINT: integers are numbers
  /// The shortest decimal that reads back as `value`; zero for NaN and infinity.
  static Number FromDouble(double value);

  /// Reads a literal in formula syntax ("12", ".5", "1e3") without surrounding text. nullopt if it is invalid.
  static std::optional<Number> Parse(std::u16string_view literal);

  /// FileMaker's text form: ".25", "-.5", "0", no trailing zeros, no separators. Never an exponent.
  std::u16string ToText() const;
  double ToDouble() const;
  /// Truncates toward zero; values out of range give the nearest limit.
  long long ToInteger() const;

  int Sign() const { return sgn(digits_); }
  bool IsInteger() const { return scale_ <= 0; }
  bool InRange() const;
  Number operator-() const;
  Number operator+(const Number& other) const;
  Number operator-(const Number& other) const;
  Number operator*(const Number& other) const;
  /// Rounded to `places` after the point. nullopt when `divisor` is zero.
  std::optional<Number> DividedBy(const Number& divisor, int places = kDivisionPlaces) const;
  /// The next lower integer of the exact quotient. nullopt when `divisor` is zero.
  std::optional<Number> FloorDividedBy(const Number& divisor) const;
  /// Correct to 16 decimal places, or to 16 significant digits if those are more. nullopt where `function` is
  /// not defined or infinite; the result may be out of range.
  std::optional<Number> Apply(RealFunction function) const;
  /// With the accuracy of Apply, or exact for integer exponents from 0 on. nullopt when the power does not exist (zero
  /// to a negative power, a root of a negative number) or is too large.
  std::optional<Number> Power(const Number& exponent) const;

  /// Rounds halves away from zero; negative places round to tens, hundreds...
  Number Rounded(int places) const;
  Number Truncated(int places) const;
  Number Floor() const;
  Number Ceiling() const;

  std::strong_ordering operator<=>(const Number& other) const;
  bool operator==(const Number& other) const;

 private:
  /// Every number passes through here. Drops trailing zeros, rounds to FileMaker's number of digits, and keeps the
  /// scale small.
  Number(mpz_class digits, long long scale);

  class Real;

  Number RoundedToSignificant(int count) const;
  std::optional<Number> IntegerPower(const Number& exponent) const;

  mpz_class digits_;  // the value is digits_ * 10^-scale_; no trailing zeros
  int scale_ = 0;
};

}  // namespace calc
