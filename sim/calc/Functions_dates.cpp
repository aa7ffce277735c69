// Dates, times and timestamps: composed from parts, and decomposed.
#include <array>
#include <optional>
#include <string_view>

#include "calc/Calendar.h"
#include "calc/Errors.h"
#include "calc/Functions.h"
#include "calc/Moments.h"

namespace calc {
namespace {

constexpr std::array<std::u16string_view, 7> kDayNames = {u"Sunday",   u"Monday", u"Tuesday", u"Wednesday",
                                                          u"Thursday", u"Friday", u"Saturday"};
constexpr std::array<std::u16string_view, 12> kMonthNames = {u"January",   u"February", u"March",    u"April",
                                                             u"May",       u"June",     u"July",     u"August",
                                                             u"September", u"October",  u"November", u"December"};

Value Moment(Type type, const std::optional<Number>& serial) {
  return serial ? Value::OfMoment(type, *serial) : Value::OfError(errors::kBadArgument);
}

Value Date(Arguments arguments) {
  const auto day = DayNumber(arguments[2].AsNumber().ToInteger(), arguments[0].AsNumber().ToInteger(),
                             arguments[1].AsNumber().ToInteger());
  return Moment(Type::kDate, day ? std::optional<Number>(*day) : std::nullopt);
}

Value Time(Arguments arguments) {
  const Number seconds = arguments[0].AsNumber() * 3600 + arguments[1].AsNumber() * 60 + arguments[2].AsNumber();
  return Moment(Type::kTime, seconds.InRange() ? std::optional(seconds) : std::nullopt);
}

Value Timestamp(Arguments arguments) {
  const auto day = DateIn(arguments[0]);
  const auto time = TimeIn(arguments[1]);
  if (!day || !time) return Value::OfError(errors::kBadArgument);
  return Moment(Type::kTimestamp, TimestampIn(Value::OfNumber((*day - 1) * kSecondsPerDay + *time)));
}

// One part of a date or time; empty for an empty argument.
template <typename Part>
Value PartOf(const Value& value, std::optional<Number> (*read)(const Value&), Part part) {
  if (value.IsEmpty()) return {};
  const auto serial = read(value);
  return serial ? part(*serial) : Value::OfError(errors::kBadArgument);
}

template <typename Part>
Value PartOfDate(Arguments arguments, Part part) {
  return PartOf(arguments[0], DateIn, [part](const Number& day) { return part(day.ToInteger()); });
}

Value Year(Arguments arguments) {
  return PartOfDate(arguments, [](long long day) { return Value::OfNumber(DateOfDay(day).year); });
}
Value Month(Arguments arguments) {
  return PartOfDate(arguments, [](long long day) { return Value::OfNumber(DateOfDay(day).month); });
}
Value Day(Arguments arguments) {
  return PartOfDate(arguments, [](long long day) { return Value::OfNumber(DateOfDay(day).day); });
}
Value WeekdayNumber(Arguments arguments) {
  return PartOfDate(arguments, [](long long day) { return Value::OfNumber(DayOfWeek(day)); });
}
Value DayNumberInYear(Arguments arguments) {
  return PartOfDate(arguments, [](long long day) { return Value::OfNumber(DayOfYear(day)); });
}
Value WeekNumber(Arguments arguments) {
  return PartOfDate(arguments, [](long long day) { return Value::OfNumber(WeekOfYear(day)); });
}
Value DayName(Arguments arguments) {
  return PartOfDate(arguments, [](long long day) {
    return Value::OfText(std::u16string(kDayNames[static_cast<size_t>(DayOfWeek(day) - 1)]));
  });
}
Value MonthName(Arguments arguments) {
  return PartOfDate(arguments, [](long long day) {
    return Value::OfText(std::u16string(kMonthNames[static_cast<size_t>(DateOfDay(day).month - 1)]));
  });
}

Value Hour(Arguments arguments) {
  return PartOf(arguments[0], TimeIn, [](const Number& time) { return Value::OfNumber(*time.FloorDividedBy(3600)); });
}
Value Minute(Arguments arguments) {
  return PartOf(arguments[0], TimeIn, [](const Number& time) {
    return Value::OfNumber(*(time - *time.FloorDividedBy(3600) * 3600).FloorDividedBy(60));
  });
}
Value Seconds(Arguments arguments) {
  return PartOf(arguments[0], TimeIn,
                [](const Number& time) { return Value::OfNumber(time - *time.FloorDividedBy(60) * 60); });
}

Value GetAsDate(Arguments arguments) {
  return arguments[0].IsEmpty() ? Value() : Moment(Type::kDate, DateIn(arguments[0]));
}
Value GetAsTime(Arguments arguments) {
  return arguments[0].IsEmpty() ? Value() : Moment(Type::kTime, TimeIn(arguments[0]));
}
Value GetAsTimestamp(Arguments arguments) {
  return arguments[0].IsEmpty() ? Value() : Moment(Type::kTimestamp, TimestampIn(arguments[0]));
}

constexpr Builtin kDateFunctions[] = {
    {u"Date", {3, 3}, Date},
    {u"Day", {1, 1}, Day},
    {u"DayName", {1, 1}, DayName},
    {u"DayOfWeek", {1, 1}, WeekdayNumber},
    {u"DayOfYear", {1, 1}, DayNumberInYear},
    {u"GetAsDate", {1, 1}, GetAsDate},
    {u"GetAsTime", {1, 1}, GetAsTime},
    {u"GetAsTimestamp", {1, 1}, GetAsTimestamp},
    {u"Hour", {1, 1}, Hour},
    {u"Minute", {1, 1}, Minute},
    {u"Month", {1, 1}, Month},
    {u"MonthName", {1, 1}, MonthName},
    {u"Seconds", {1, 1}, Seconds},
    {u"Time", {3, 3}, Time},
    {u"Timestamp", {2, 2}, Timestamp},
    {u"WeekOfYear", {1, 1}, WeekNumber},
    {u"Year", {1, 1}, Year},
};

}  // namespace

std::span<const Builtin> DateFunctions() { return kDateFunctions; }

}  // namespace calc
