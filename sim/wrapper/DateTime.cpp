// Dates, times and timestamps.
#include <chrono>
#include <ctime>
#include <optional>
#include <stdexcept>

#include "calc/Calendar.h"
#include "calc/Errors.h"
#include "wrapper/Objects.h"

namespace wrapper {

using calc::Number;

Number DateTimeObject::SecondsSinceEpoch() const { return Number(day - 1) * calc::kSecondsPerDay + seconds; }

void DateTimeObject::SetSecondsSinceEpoch(const Number& total) {
  const Number days = *total.FloorDividedBy(calc::kSecondsPerDay);
  if (!calc::IsDay(days + 1)) throw std::out_of_range("no day of the calendar");
  day = days.ToInteger() + 1;
  seconds = total - days * calc::kSecondsPerDay;
}

namespace {

constexpr long long kMicroseconds = 1'000'000;

DateTimeObject& MomentAt(const void* self) { return Live<DateTimeObject>(self); }
Number& NumberOf(const fmx::FixPt& number) { return Live<FixPtObject>(&number).number; }

Number Microseconds(long long count) { return *Number(count).DividedBy(kMicroseconds); }

// The remainder of `seconds` divided by `unit`.
Number Remainder(const Number& seconds, long long unit) { return seconds - *seconds.FloorDividedBy(unit) * unit; }

// A timestamp, date or time; anything else yields midnight of the first day.
DateTimeObject Read(std::u16string_view text) {
  DateTimeObject moment;
  if (const auto day = calc::ParseDate(text)) {
    moment.day = day->ToInteger();
  } else if (const auto time = calc::ParseTime(text)) {
    moment.seconds = *time;
  } else if (const auto timestamp = calc::ParseTimestamp(text)) {
    moment.SetSecondsSinceEpoch(*timestamp);
  }
  return moment;
}

DateTimeObject Now() {
  const auto now = std::chrono::system_clock::now();
  const std::time_t whole = std::chrono::system_clock::to_time_t(now);
  std::tm local{};
  localtime_r(&whole, &local);
  const auto fraction = std::chrono::floor<std::chrono::microseconds>(now.time_since_epoch()).count() % kMicroseconds;
  return {*calc::DayNumber(local.tm_year + 1900, local.tm_mon + 1, local.tm_mday),
          Number(local.tm_hour * 3600 + local.tm_min * 60 + local.tm_sec) + Microseconds(fraction)};
}

fmx::errcode SetDate(void* self, long long month, long long day, long long year) {
  const auto number = calc::DayNumber(year, month, day);
  if (number) MomentAt(self).day = *number;
  return number ? 0 : calc::errors::kOutOfRange;
}

fmx::errcode SetTime(void* self, const Number& hours, const Number& minutes, const Number& seconds) {
  MomentAt(self).seconds = hours * 3600 + minutes * 60 + seconds;
  return 0;
}

}  // namespace
}  // namespace wrapper

namespace fmx {

using wrapper::DateTimeObject;
using wrapper::HostCall;
using wrapper::MomentAt;
using wrapper::NumberOf;

FM_API DateTime* FM_DateTime_Constructor1(_fmxcpt& x) {
  return HostCall(__func__, x, [&] { return wrapper::Make<DateTimeObject>(); });
}

FM_API DateTime* FM_DateTime_Constructor2(const unichar16* units, uint32 length, const Locale& /*always English*/,
                                          _fmxcpt& x) {
  return HostCall(__func__, x, [&] {
    return wrapper::Make<DateTimeObject>(wrapper::Read({reinterpret_cast<const char16_t*>(units), length}));
  });
}

FM_API DateTime* FM_DateTime_Constructor3(const Text& text, const Locale& /*always English*/, _fmxcpt& x) {
  return HostCall(__func__, x, [&] {
    return wrapper::Make<DateTimeObject>(wrapper::Read(wrapper::Live<wrapper::TextObject>(&text).units));
  });
}

FM_API void FM_DateTime_Delete(void* self, _fmxcpt&) { wrapper::Delete<DateTimeObject>(__func__, self); }

FM_EQUALITY(DateTime, DateTime)

FM_API void FM_DateTime_Now(void* self, _fmxcpt& x) {
  HostCall(__func__, x, [&] { MomentAt(self) = wrapper::Now(); });
}

FM_API void FM_DateTime_SetDate(void* self, const DateTime& other, _fmxcpt& x) {
  HostCall(__func__, x, [&] { MomentAt(self).day = MomentAt(&other).day; });
}

FM_API void FM_DateTime_SetTime(void* self, const DateTime& other, _fmxcpt& x) {
  HostCall(__func__, x, [&] { MomentAt(self).seconds = MomentAt(&other).seconds; });
}

FM_API errcode FM_DateTime_SetNormalizedDate1(void* self, int16 month, int16 day, int16 year, _fmxcpt& x) {
  return HostCall(__func__, x, [&] { return wrapper::SetDate(self, month, day, year); });
}

FM_API errcode FM_DateTime_SetNormalizedDate2(void* self, const FixPt& month, const FixPt& day, const FixPt& year,
                                              _fmxcpt& x) {
  return HostCall(__func__, x, [&] {
    return wrapper::SetDate(self, NumberOf(month).ToInteger(), NumberOf(day).ToInteger(), NumberOf(year).ToInteger());
  });
}

FM_API errcode FM_DateTime_SetNormalizedTime1(void* self, int64 hours, int16 minutes, int16 seconds, int32 microseconds,
                                              _fmxcpt& x) {
  return HostCall(__func__, x, [&] {
    return wrapper::SetTime(self, hours, minutes, calc::Number(seconds) + wrapper::Microseconds(microseconds));
  });
}

FM_API errcode FM_DateTime_SetNormalizedTime2(void* self, const FixPt& hours, const FixPt& minutes,
                                              const FixPt& seconds, _fmxcpt& x) {
  return HostCall(__func__, x,
                  [&] { return wrapper::SetTime(self, NumberOf(hours), NumberOf(minutes), NumberOf(seconds)); });
}

FM_API void FM_DateTime_SetDaysSinceEpoch(void* self, int64 days, _fmxcpt& x) {
  HostCall(__func__, x, [&] {
    if (!calc::IsDay(days)) throw std::out_of_range("no day of the calendar");
    MomentAt(self).day = days;
  });
}

FM_API void FM_DateTime_SetSecondsSinceEpoch(void* self, const FixPt& seconds, _fmxcpt& x) {
  HostCall(__func__, x, [&] { MomentAt(self).SetSecondsSinceEpoch(NumberOf(seconds)); });
}

FM_API void FM_DateTime_SetSecsSinceMidnight(void* self, const FixPt& seconds, _fmxcpt& x) {
  HostCall(__func__, x, [&] { MomentAt(self).seconds = NumberOf(seconds); });
}

FM_API bool FM_DateTime_IsLeapYear(const void* self, _fmxcpt& x) {
  return HostCall(__func__, x, [&] { return std::chrono::year(calc::DateOfDay(MomentAt(self).day).year).is_leap(); });
}

#define DATETIME_PART(Integer, name, expression)                    \
  FM_API Integer FM_DateTime_##name(const void* self, _fmxcpt& x) { \
    return HostCall(__func__, x, [&] {                              \
      [[maybe_unused]] const auto& [day, seconds] = MomentAt(self); \
      return static_cast<Integer>(expression);                      \
    });                                                             \
  }
DATETIME_PART(int16, GetYear, calc::DateOfDay(day).year)
DATETIME_PART(int16, GetMonth, calc::DateOfDay(day).month)
DATETIME_PART(int16, GetDay, calc::DateOfDay(day).day)
DATETIME_PART(int16, DayOfYear, calc::DayOfYear(day))
DATETIME_PART(int16, DayOfWeek, calc::DayOfWeek(day))
DATETIME_PART(int16, WeekOfYear, calc::WeekOfYear(day))
DATETIME_PART(int32, GetDaysSinceEpoch, day)
DATETIME_PART(int32, GetHour, seconds.FloorDividedBy(3600)->ToInteger())
DATETIME_PART(int16, GetMinute, wrapper::Remainder(seconds, 3600).FloorDividedBy(60)->ToInteger())
DATETIME_PART(int16, GetSec, wrapper::Remainder(seconds, 60).ToInteger())
DATETIME_PART(int32, GetUSec, (wrapper::Remainder(seconds, 1) * wrapper::kMicroseconds).ToInteger())
#undef DATETIME_PART

FM_API void FM_DateTime_GetSeconds(const void* self, FixPt& result, _fmxcpt& x) {
  HostCall(__func__, x, [&] { NumberOf(result) = wrapper::Remainder(MomentAt(self).seconds, 60); });
}

FM_API void FM_DateTime_GetSecondsSinceEpoch(const void* self, FixPt& result, _fmxcpt& x) {
  HostCall(__func__, x, [&] { NumberOf(result) = MomentAt(self).SecondsSinceEpoch(); });
}

FM_API void FM_DateTime_GetSecsSinceMidnight(const void* self, FixPt& result, _fmxcpt& x) {
  HostCall(__func__, x, [&] { NumberOf(result) = MomentAt(self).seconds; });
}

}  // namespace fmx
