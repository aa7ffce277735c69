// The conversions between FileMaker's types.
#include "calc/Value.h"

#include <utility>

#include "calc/Calendar.h"
#include "calc/Unicode.h"

namespace calc {
namespace {

constexpr std::u16string_view kErrorText = u"?";

}  // namespace

std::optional<Number> NumberIn(std::u16string_view text) {
  std::u16string literal;
  bool negative = false;
  bool sawPoint = false;
  bool sawDigit = false;
  for (const char16_t unit : text) {
    if (IsDigit(unit)) {
      literal += unit;
      sawDigit = true;
    } else if (unit == u'.' && !sawPoint) {
      literal += unit;
      sawPoint = true;
    } else if ((unit == u'-' || unit == u'(') && literal.empty()) {
      negative = true;
    }
  }
  if (!sawDigit) return std::nullopt;
  if (literal.back() == u'.') literal.pop_back();
  const Number number = Number::Parse(literal).value_or(Number());
  return negative ? -number : number;
}

Value Value::OfText(std::u16string text) {
  Value value;
  if (!text.empty()) value.text_ = std::make_shared<const std::u16string>(std::move(text));
  return value;
}

Value Value::OfNumber(Number number) { return OfMoment(Type::kNumber, std::move(number)); }

Value Value::OfMoment(Type type, Number serial) {
  Value value;
  value.type_ = type;
  value.number_ = std::move(serial);
  return value;
}

Value Value::OfContainer(std::u16string fileName, std::shared_ptr<const void> content) {
  Value value = OfText(std::move(fileName));
  value.type_ = Type::kContainer;
  value.container_ = std::move(content);
  return value;
}

Value Value::OfError(int code) {
  Value value;
  value.type_ = Type::kInvalid;
  value.error_ = code;
  return value;
}

Value Value::AsKept() const {
  Value value = *this;
  value.error_ = 0;
  return value;
}

std::u16string Value::MakeText() const {
  switch (type_) {
    case Type::kInvalid:
      return std::u16string(kErrorText);
    case Type::kText:
    case Type::kContainer:
      return {};
    case Type::kDate:
      return FormatDate(number_);
    case Type::kTime:
      return FormatTime(number_);
    case Type::kTimestamp:
      return FormatTimestamp(number_);
    case Type::kNumber:
    case Type::kBoolean:
      break;
  }
  return number_.ToText();
}

const std::u16string& Value::AsText() const& {
  if (!text_) text_ = std::make_shared<const std::u16string>(MakeText());
  return *text_;
}

std::u16string Value::AsText() && { return std::as_const(*this).AsText(); }

Number Value::AsNumber() const {
  if (type_ == Type::kText) return NumberIn(AsText()).value_or(Number());
  return number_;
}

bool Value::AsBoolean() const {
  if (type_ == Type::kText && AsText() == kErrorText) return true;
  return IsError() || AsNumber().Sign() != 0;
}

bool Value::IsEmpty() const { return IsError() || (type_ == Type::kText && AsText().empty()); }

}  // namespace calc
