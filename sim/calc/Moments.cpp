// Values read as dates, times and timestamps.
#include "calc/Moments.h"

#include "calc/Calendar.h"

namespace calc {
namespace {

// A text may hold a serial number in place of a date.
std::optional<Number> OrSerial(const std::optional<Number>& moment, const Value& value) {
  return moment ? moment : Number::Parse(value.AsText());
}

std::optional<Number> IfDay(const std::optional<Number>& day) {
  return day && IsDay(*day) ? std::optional(day->Floor()) : std::nullopt;
}

Number WholeDays(const Number& seconds) { return *seconds.FloorDividedBy(kSecondsPerDay); }

}  // namespace

std::optional<Number> DateIn(const Value& value) {
  switch (value.type()) {
    case Type::kText:
      return IfDay(OrSerial(ParseDate(value.AsText()), value));
    case Type::kDate:
    case Type::kNumber:
      return IfDay(value.AsNumber());
    case Type::kTimestamp:
      return IfDay(WholeDays(value.AsNumber()) + 1);
    default:
      return std::nullopt;
  }
}

std::optional<Number> TimeIn(const Value& value) {
  switch (value.type()) {
    case Type::kText:
      return OrSerial(ParseTime(value.AsText()), value);
    case Type::kTime:
    case Type::kNumber:
      return value.AsNumber();
    case Type::kTimestamp:
      return value.AsNumber() - WholeDays(value.AsNumber()) * kSecondsPerDay;
    default:
      return std::nullopt;
  }
}

std::optional<Number> TimestampIn(const Value& value) {
  std::optional<Number> seconds;
  switch (value.type()) {
    case Type::kText:
      seconds = OrSerial(ParseTimestamp(value.AsText()), value);
      break;
    case Type::kTimestamp:
    case Type::kNumber:
      seconds = value.AsNumber();
      break;
    case Type::kDate:
      seconds = (value.AsNumber() - 1) * kSecondsPerDay;
      break;
    default:
      break;
  }
  return seconds && IsDay(WholeDays(*seconds) + 1) ? seconds : std::nullopt;
}

}  // namespace calc
