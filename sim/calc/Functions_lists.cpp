// Lists: texts with values separated by returns.
#include <algorithm>
#include <cmath>
#include <optional>
#include <string>
#include <unordered_set>
#include <utility>
#include <vector>

#include "calc/Calendar.h"
#include "calc/Functions.h"
#include "calc/Unicode.h"

namespace calc {
namespace {

constexpr std::u16string_view kSeparators = u"\r\n\u2028\u2029";

// Moves the next value of `list` to `value`. A trailing separator does not add a value.
bool TakeValue(std::u16string_view& list, std::u16string_view& value) {
  if (list.empty()) return false;
  const size_t end = list.find_first_of(kSeparators);
  value = list.substr(0, end);
  list.remove_prefix(end == list.npos ? list.size() : end + 1);
  return true;
}

void AppendValue(std::u16string& list, std::u16string_view value) {
  list += value;
  list += u'\r';
}

std::vector<std::u16string_view> ValuesOf(std::u16string_view list) {
  std::vector<std::u16string_view> values;
  for (std::u16string_view value; TakeValue(list, value);) values.push_back(value);
  return values;
}

Value ListOf(const std::vector<std::u16string_view>& values) {
  std::u16string list;
  for (const std::u16string_view value : values) AppendValue(list, value);
  return Value::OfText(std::move(list));
}

long long CountValues(std::u16string_view list) {
  long long count = 0;
  for (std::u16string_view value; TakeValue(list, value);) ++count;
  return count;
}

// `count` values from number `first` (from 0) on, as far as they exist.
Value ValueRange(std::u16string_view list, long long first, long long count) {
  std::u16string result;
  std::u16string_view value;
  for (; first > 0 && TakeValue(list, value); --first) continue;
  for (; count > 0 && TakeValue(list, value); --count) AppendValue(result, value);
  return Value::OfText(std::move(result));
}

Value GetValue(Arguments arguments) {
  std::u16string_view list = arguments[0].AsText();
  std::u16string_view value;
  const long long number = arguments[1].AsNumber().ToInteger();
  if (number < 1) return {};
  for (long long at = 0; at < number; ++at) {
    if (!TakeValue(list, value)) return {};
  }
  return Value::OfText(std::u16string(value));
}

Value ValueCount(Arguments arguments) { return Value::OfNumber(CountValues(arguments[0].AsText())); }

Value LeftValues(Arguments arguments) {
  return ValueRange(arguments[0].AsText(), 0, arguments[1].AsNumber().ToInteger());
}

Value RightValues(Arguments arguments) {
  const long long total = CountValues(arguments[0].AsText());
  const long long count = std::clamp(arguments[1].AsNumber().ToInteger(), 0LL, total);
  return ValueRange(arguments[0].AsText(), total - count, count);
}

Value MiddleValues(Arguments arguments) {
  const long long start = std::max(1LL, arguments[1].AsNumber().ToInteger());
  return ValueRange(arguments[0].AsText(), start - 1, arguments[2].AsNumber().ToInteger());
}

Value FilterValues(Arguments arguments) {
  std::unordered_set<std::u16string> wanted;
  for (const std::u16string_view value : ValuesOf(arguments[1].AsText())) wanted.insert(EqualityKey(value));
  std::vector<std::u16string_view> values = ValuesOf(arguments[0].AsText());
  std::erase_if(values, [&wanted](std::u16string_view value) { return !wanted.contains(EqualityKey(value)); });
  return ListOf(values);
}

Value List(Arguments arguments) {
  std::u16string list;
  for (const Value& value : arguments) {
    if (value.IsEmpty()) continue;
    if (!list.empty()) list += u'\r';
    list += value.AsText();
  }
  return Value::OfText(std::move(list));
}

// Numeric sort keys of a list's values, read as numbers, dates... Texts have none.
std::optional<Number> Serial(std::u16string_view value, Type type) {
  switch (type) {
    case Type::kNumber:
      return NumberIn(value);
    case Type::kDate:
      return ParseDate(value);
    case Type::kTime:
      return ParseTime(value);
    case Type::kTimestamp:
      return ParseTimestamp(value);
    default:
      return std::nullopt;
  }
}

// The optional argument with the type of the values: 1 text, 2 number, 3 date, 4 time, 5 timestamp.
long long TypeArgument(Arguments arguments) { return arguments.size() > 1 ? arguments[1].AsNumber().ToInteger() : 1; }

Type TypeOf(long long argument) {
  const long long number = std::clamp(argument, -9LL, 9LL);
  switch (std::abs(number)) {
    case 2:
      return Type::kNumber;
    case 3:
      return Type::kDate;
    case 4:
      return Type::kTime;
    case 5:
      return Type::kTimestamp;
    default:
      return Type::kText;
  }
}

Value UniqueValues(Arguments arguments) {
  const Type type = TypeOf(TypeArgument(arguments));
  std::unordered_set<std::u16string> seen;
  std::vector<std::u16string_view> values = ValuesOf(arguments[0].AsText());
  std::erase_if(values, [&seen, type](std::u16string_view value) {
    const auto serial = Serial(value, type);
    return !seen.insert(serial ? serial->ToText() : EqualityKey(value)).second;
  });
  return ListOf(values);
}

Value SortValues(Arguments arguments) {
  const long long argument = TypeArgument(arguments);
  const Type type = TypeOf(argument);
  using Entry = std::pair<std::optional<Number>, std::u16string_view>;
  std::vector<Entry> entries;
  for (const std::u16string_view value : ValuesOf(arguments[0].AsText())) {
    entries.emplace_back(Serial(value, type), value);
  }
  // Values that cannot be read as the type come first.
  const auto before = [](const Entry& a, const Entry& b) {
    return a.first || b.first ? a.first < b.first : CompareTexts(a.second, b.second) < 0;
  };
  std::stable_sort(entries.begin(), entries.end(),
                   [&](const Entry& a, const Entry& b) { return argument < 0 ? before(b, a) : before(a, b); });
  std::u16string list;
  for (const Entry& entry : entries) AppendValue(list, entry.second);
  return Value::OfText(std::move(list));
}

constexpr Builtin kListFunctions[] = {
    {u"FilterValues", {2, 2}, FilterValues}, {u"GetValue", {2, 2}, GetValue},
    {u"LeftValues", {2, 2}, LeftValues},     {u"List", {1, kAnyNumber}, List},
    {u"MiddleValues", {3, 3}, MiddleValues}, {u"RightValues", {2, 2}, RightValues},
    {u"SortValues", {1, 3}, SortValues},     {u"UniqueValues", {1, 3}, UniqueValues},
    {u"ValueCount", {1, 1}, ValueCount},
};

}  // namespace

std::span<const Builtin> ListFunctions() { return kListFunctions; }

}  // namespace calc
