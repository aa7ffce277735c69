// The values of a calculation: a typed FileMaker value, or the error value that prints as "?".
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "calc/Number.h"

namespace calc {

/// The numbers are those of the host interface's native types.
enum class Type {
  kInvalid = 0,
  kText = 1,
  kNumber = 2,
  kDate = 3,
  kTime = 4,
  kTimestamp = 5,
  kContainer = 6,
  kBoolean = 7
};

/// All digits of `text` joined: "12abc34" is 1234, "(22)" is -22, "$1,254.50" is 1254.5. nullopt when there are no
/// digits.
std::optional<Number> NumberIn(std::u16string_view text);

/// Copies share their text, so they are cheap. One thread at a time, even for copies.
class Value {
 public:
  /// The empty text.
  Value() = default;
  static Value OfText(std::u16string text);
  static Value OfNumber(Number number);
  /// A date (day number), time (seconds) or timestamp (seconds since the first day).
  static Value OfMoment(Type type, Number serial);
  /// The content of a container field. Calculations see only the name of its file; `content` belongs to the host.
  static Value OfContainer(std::u16string fileName, std::shared_ptr<const void> content);
  static Value OfBoolean(bool value) { return OfNumber(value ? 1 : 0); }
  /// The value "?" that carries a FileMaker error number.
  static Value OfError(int code);

  Type type() const { return type_; }
  bool IsError() const { return type_ == Type::kInvalid; }
  /// The number of an error value; 0 for every other value, and for an error value that was kept in a variable.
  int error() const { return error_; }
  /// The value after storage in a variable: an error value keeps its type but loses its number.
  Value AsKept() const;

  /// The text form; dates and times in the American form FileMaker uses for English files.
  const std::u16string& AsText() const&;
  std::u16string AsText() &&;
  /// For text, all its digits joined (see NumberIn); zero if it has none.
  Number AsNumber() const;
  /// True for a number other than zero, as in FileMaker, and for error values and the text "?".
  bool AsBoolean() const;
  /// The `content` passed to OfContainer; nullptr for every other value.
  const std::shared_ptr<const void>& container() const { return container_; }
  /// True for empty text and for error values.
  bool IsEmpty() const;

 private:
  std::u16string MakeText() const;

  Type type_ = Type::kText;
  int error_ = 0;
  Number number_;  // of numbers and moments
  std::shared_ptr<const void> container_;
  mutable std::shared_ptr<const std::u16string> text_;  // of texts; for others, their cached text form
};

}  // namespace calc
