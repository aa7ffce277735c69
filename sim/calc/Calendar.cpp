// The proleptic Gregorian calendar and the American text forms.
#include "calc/Calendar.h"

#include <chrono>
#include <vector>

#include "calc/Unicode.h"

namespace calc {
namespace {

namespace chr = std::chrono;

constexpr long long kDayOfUnixEpoch = 719163;
constexpr long long kLastYear = 4000;
// Beyond every date that could still be brought back into the calendar.
constexpr long long kPartLimit = 10'000'000;
constexpr std::u16string_view kInvalidText = u"?";

std::u16string Digits(long long value, size_t width = 1) {
  std::string text = std::to_string(value);
  if (text.size() < width) text.insert(0, width - text.size(), '0');
  return {text.begin(), text.end()};
}

bool IsPart(long long value) { return value > -kPartLimit && value < kPartLimit; }

CalendarDate Today() {
  const auto today = chr::floor<chr::days>(chr::system_clock::now());
  return DateOfDay(today.time_since_epoch().count() + kDayOfUnixEpoch);
}

// FileMaker reads a two-digit year as one of the next thirty years or the seventy years before.
long long FullYear(long long year) {
  const long long now = Today().year;
  long long full = now - now % 100 + year;
  if (full > now + 30) full -= 100;
  if (full <= now - 70) full += 100;
  return full;
}

std::u16string_view TrimBlanks(std::u16string_view text) {
  while (!text.empty() && text.front() == u' ') text.remove_prefix(1);
  while (!text.empty() && text.back() == u' ') text.remove_suffix(1);
  return text;
}

// "1/31/2024" split at any of `separators` into numbers; empty when a piece is not a number.
std::vector<Number> Pieces(std::u16string_view text, std::u16string_view separators) {
  std::vector<Number> pieces;
  for (bool more = true; more;) {
    const size_t end = text.find_first_of(separators);
    more = end != text.npos;
    const auto piece = Number::Parse(text.substr(0, end));
    if (!piece) return {};
    pieces.push_back(*piece);
    if (more) text.remove_prefix(end + 1);
  }
  return pieces;
}

std::u16string HourAndMinute(long long shownHour, long long wholeSeconds) {
  return Digits(shownHour) + u":" + Digits(wholeSeconds / 60 % 60, 2);
}

std::u16string Seconds(long long wholeSeconds, const Number& fraction) {
  return u":" + Digits(wholeSeconds % 60, 2) + (fraction.Sign() == 0 ? u"" : fraction.ToText());
}

bool TakeSuffix(std::u16string_view& text, std::u16string_view suffix) {
  if (text.size() < suffix.size()) return false;
  const size_t start = text.size() - suffix.size();
  if (!EqualIgnoringCase(text.substr(start), suffix)) return false;
  text = TrimBlanks(text.substr(0, start));
  return true;
}

}  // namespace

std::optional<long long> DayNumber(long long year, long long month, long long day) {
  if (!IsPart(year) || !IsPart(month) || !IsPart(day)) return std::nullopt;
  const long long months = year * 12 + month - 1;
  const long long firstYear = months >= 0 ? months / 12 : -((11 - months) / 12);
  if (firstYear < -kLastYear || firstYear > 2 * kLastYear) return std::nullopt;
  const chr::year_month_day first{chr::year(static_cast<int>(firstYear)),
                                  chr::month(static_cast<unsigned>(months - firstYear * 12 + 1)), chr::day(1)};
  const long long number = chr::sys_days(first).time_since_epoch().count() + kDayOfUnixEpoch + day - 1;
  return IsDay(number) ? std::optional(number) : std::nullopt;
}

CalendarDate DateOfDay(long long dayNumber) {
  const chr::year_month_day date(chr::sys_days(chr::days(dayNumber - kDayOfUnixEpoch)));
  return {static_cast<int>(date.year()), static_cast<int>(static_cast<unsigned>(date.month())),
          static_cast<int>(static_cast<unsigned>(date.day()))};
}

bool IsDay(const Number& dayNumber) { return dayNumber >= 1 && dayNumber.Truncated(0) <= kLastDay; }

long long DayOfWeek(long long dayNumber) { return dayNumber % 7 + 1; }

long long DayOfYear(long long dayNumber) { return dayNumber - *DayNumber(DateOfDay(dayNumber).year, 1, 1) + 1; }

long long WeekOfYear(long long dayNumber) {
  const long long day = DayOfYear(dayNumber);
  const long long firstWeekday = DayOfWeek(dayNumber - day + 1);
  return (day + firstWeekday - 2) / 7 + 1;
}

std::u16string FormatDate(const Number& dayNumber) {
  if (!IsDay(dayNumber)) return std::u16string(kInvalidText);
  const CalendarDate date = DateOfDay(dayNumber.ToInteger());
  return Digits(date.month) + u"/" + Digits(date.day) + u"/" + Digits(date.year);
}

std::u16string FormatTime(const Number& seconds) {
  const Number length = seconds.Sign() < 0 ? -seconds : seconds;
  const long long whole = length.ToInteger();
  return (seconds.Sign() < 0 ? u"-" : u"") + HourAndMinute(whole / 3600, whole) +
         Seconds(whole, length - length.Floor());
}

std::u16string FormatTimestamp(const Number& seconds) {
  const Number whole = seconds.Floor();
  const Number day = whole.FloorDividedBy(kSecondsPerDay).value_or(Number()) + 1;
  if (!IsDay(day)) return std::u16string(kInvalidText);
  const long long clock = whole.ToInteger() % kSecondsPerDay;
  const long long hour = clock / 3600;
  const Number fraction = seconds - whole;
  const bool isFullMinute = clock % 60 == 0 && fraction.Sign() == 0;
  return FormatDate(day) + u" " + HourAndMinute((hour + 11) % 12 + 1, clock) +
         (isFullMinute ? u"" : Seconds(clock, fraction)) + (hour < 12 ? u" AM" : u" PM");
}

std::optional<Number> ParseDate(std::u16string_view text) {
  const std::vector<Number> pieces = Pieces(TrimBlanks(text), u"/-.");
  if (pieces.size() < 2 || pieces.size() > 3) return std::nullopt;
  const long long month = pieces[0].ToInteger();
  const long long day = pieces[1].ToInteger();
  long long year = pieces.size() == 3 ? pieces[2].ToInteger() : Today().year;
  if (pieces.size() == 3 && year < 100) year = FullYear(year);
  const auto number = DayNumber(year, month, day);
  // A day that does not exist would have moved into another month.
  if (!number || month > 12 || DateOfDay(*number).day != day || DateOfDay(*number).month != month) return std::nullopt;
  return Number(*number);
}

std::optional<Number> ParseTime(std::u16string_view text) {
  text = TrimBlanks(text);
  const bool negative = !text.empty() && text.front() == u'-';
  if (negative) text.remove_prefix(1);
  const bool pm = TakeSuffix(text, u"PM");
  const bool am = !pm && TakeSuffix(text, u"AM");
  std::vector<Number> pieces = Pieces(text, u":");
  if (pieces.empty() || pieces.size() > 3) return std::nullopt;
  if ((am || pm) && (pieces[0] > 12 || negative)) return std::nullopt;
  if (am && pieces[0] == 12) pieces[0] = 0;
  if (pm && pieces[0] != 12) pieces[0] = pieces[0] + 12;
  pieces.resize(3);
  const Number seconds = pieces[0] * 3600 + pieces[1] * 60 + pieces[2];
  return negative ? -seconds : seconds;
}

std::optional<Number> ParseTimestamp(std::u16string_view text) {
  text = TrimBlanks(text);
  const size_t space = text.find(u' ');
  const auto day = ParseDate(text.substr(0, space));
  const auto time = space == text.npos ? std::optional<Number>(0) : ParseTime(text.substr(space));
  if (!day || !time) return std::nullopt;
  return (*day - 1) * kSecondsPerDay + *time;
}

}  // namespace calc
