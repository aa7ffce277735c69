// FileMaker's dates, times and timestamps: serial numbers, and their text in an English (American) file.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "calc/Number.h"

namespace calc {

inline constexpr long long kSecondsPerDay = 86400;
/// Day 1 is 1 January of year 1, the last one 31 December 4000.
inline constexpr long long kLastDay = 1460970;

struct CalendarDate {
  int year = 1;
  int month = 1;
  int day = 1;
};

/// The day number. Out-of-range months and days carry over. nullopt outside FileMaker's calendar.
std::optional<long long> DayNumber(long long year, long long month, long long day);
/// `dayNumber` must be within FileMaker's calendar.
CalendarDate DateOfDay(long long dayNumber);
bool IsDay(const Number& dayNumber);

/// For a day within the calendar: 1 is Sunday; 1 January is day 1; weeks begin on Sunday, and the first may be shorter.
long long DayOfWeek(long long dayNumber);
long long DayOfYear(long long dayNumber);
long long WeekOfYear(long long dayNumber);

/// "1/31/2024", "13:02:03", "1/31/2024 1:02:03 PM"; a timestamp on a full minute omits the seconds, "1/31/2024 1:02
/// PM". Fractions of a second are kept. "?" outside the calendar.
std::u16string FormatDate(const Number& dayNumber);
std::u16string FormatTime(const Number& seconds);
std::u16string FormatTimestamp(const Number& seconds);

/// Parse the forms above: month/day with an optional year (two digits mean the last 70 or the next 30 years), hours
/// with optional minutes and seconds and an optional AM or PM; a timestamp is a date and an optional time. nullopt for
/// anything else.
std::optional<Number> ParseDate(std::u16string_view text);
std::optional<Number> ParseTime(std::u16string_view text);
std::optional<Number> ParseTimestamp(std::u16string_view text);

}  // namespace calc
