// What a calculation works on: a typed FileMaker value, or the error value that prints as "?".
#pragma once

#include <string>

#include "sim/calc/Number.h"

namespace calc {

/// The numbers are those of the host interface's native types.
enum class Type { kInvalid = 0, kText = 1, kNumber = 2, kDate = 3, kTime = 4, kTimestamp = 5, kContainer = 6, kBoolean = 7 };

class Value {
 public:
  /// The empty text.
  Value() = default;
  static Value OfText(std::u16string text);
  static Value OfNumber(Number number);
  /// A date (day number), time (seconds) or timestamp (seconds since the first day).
  static Value OfMoment(Type type, Number serial);
  static Value OfBoolean(bool value) { return OfNumber(value ? 1 : 0); }
  /// The value "?" that carries a FileMaker error number.
  static Value OfError(int code);

  Type type() const { return type_; }
  /// 0 unless this is an error value.
  int error() const { return error_; }

  /// The text form; dates and times in the American form FileMaker uses for English files.
  std::u16string AsText() const;
  /// Text gives all its digits joined ("12abc34" is 1234); none gives zero.
  Number AsNumber() const;
  /// FileMaker's truth: a number other than zero. Error values are true.
  bool AsBoolean() const;
  /// True for empty text and for error values.
  bool IsEmpty() const;

 private:
  Type type_ = Type::kText;
  int error_ = 0;
  std::u16string text_;  // of texts and containers
  Number number_;        // of everything else
};

}  // namespace calc
