// Texts by position and by character. Positions count UTF-16 units, also in surrogate pairs and combining sequences.
#include <algorithm>
#include <unordered_set>
#include <utility>

#include "calc/Errors.h"
#include "calc/Functions.h"
#include "calc/Operators.h"
#include "calc/Unicode.h"

namespace calc {
namespace {

constexpr char16_t kParagraph = u'\u00B6';  // a return in literals
constexpr long long kCodeBase = 100000;     // Char and Code give each character five digits
constexpr size_t kMaxCodes = 80;            // longer texts have no code

std::u16string_view TrimSpaces(std::u16string_view text) {
  const size_t first = text.find_first_not_of(u' ');
  if (first == text.npos) return {};
  return text.substr(first, text.find_last_not_of(u' ') - first + 1);
}

// A number as a count of characters, at most `size`.
size_t CountUpTo(size_t size, const Value& count) {
  return static_cast<size_t>(std::clamp<long long>(count.AsNumber().ToInteger(), 0, static_cast<long long>(size)));
}

// A position counted from 1 as an offset, at most `size`.
size_t OffsetUpTo(size_t size, const Value& position) {
  return CountUpTo(size, Value::OfNumber(position.AsNumber() - 1));
}

Value Left(Arguments arguments) {
  const std::u16string& text = arguments[0].AsText();
  return Value::OfText(text.substr(0, CountUpTo(text.size(), arguments[1])));
}

Value Right(Arguments arguments) {
  const std::u16string& text = arguments[0].AsText();
  return Value::OfText(text.substr(text.size() - CountUpTo(text.size(), arguments[1])));
}

Value Middle(Arguments arguments) {
  const std::u16string& text = arguments[0].AsText();
  return Value::OfText(text.substr(OffsetUpTo(text.size(), arguments[1]), CountUpTo(text.size(), arguments[2])));
}

Value Length(Arguments arguments) { return Value::OfNumber(static_cast<long long>(arguments[0].AsText().size())); }

Value Replace(Arguments arguments) {
  std::u16string text = arguments[0].AsText();
  const size_t start = OffsetUpTo(text.size(), arguments[1]);
  text.replace(start, CountUpTo(text.size() - start, arguments[2]), arguments[3].AsText());
  return Value::OfText(std::move(text));
}

Value Trim(Arguments arguments) { return Value::OfText(std::u16string(TrimSpaces(arguments[0].AsText()))); }
Value Upper(Arguments arguments) { return Value::OfText(ToUpper(arguments[0].AsText())); }
Value Lower(Arguments arguments) { return Value::OfText(ToLower(arguments[0].AsText())); }
Value Proper(Arguments arguments) { return Value::OfText(ToTitle(arguments[0].AsText())); }

Value Exact(Arguments arguments) { return Value::OfBoolean(arguments[0].AsText() == arguments[1].AsText()); }

Value Filter(Arguments arguments) {
  const std::u16string& allowed = arguments[1].AsText();
  const std::unordered_set<char16_t> units(allowed.begin(), allowed.end());
  std::u16string result;
  for (const char16_t unit : arguments[0].AsText()) {
    if (units.contains(unit)) result += unit;
  }
  return Value::OfText(std::move(result));
}

Value Char(Arguments arguments) {
  Number rest = arguments[0].AsNumber().Truncated(0);
  if (rest.Sign() < 0) return Value::OfError(errors::kBadArgument);
  std::u16string text;
  while (rest.Sign() > 0) {
    const Number higher = rest.FloorDividedBy(kCodeBase).value_or(Number());
    const long long code = (rest - higher * kCodeBase).ToInteger();
    if (code > 0xFFFF) {
      text += static_cast<char16_t>(0xD7C0 + (code >> 10));
      text += static_cast<char16_t>(0xDC00 + (code & 0x3FF));
    } else {
      text += static_cast<char16_t>(code);
    }
    rest = higher;
  }
  return Value::OfText(std::move(text));
}

Value Code(Arguments arguments) {
  const std::u16string& text = arguments[0].AsText();
  if (text.empty()) return {};
  if (text.size() > kMaxCodes) return Value::OfError(errors::kOutOfRange);
  Number codes;
  for (auto unit = text.rbegin(); unit != text.rend(); ++unit) codes = codes * kCodeBase + *unit;
  return NumberValue(codes);
}

// A literal that evaluates to the text.
Value Quote(Arguments arguments) {
  std::u16string result = u"\"";
  for (const char16_t unit : arguments[0].AsText()) {
    if (unit == u'"' || unit == u'\\' || unit == kParagraph) result += u'\\';
    result += unit == u'\r' ? kParagraph : unit;
  }
  return Value::OfText(result + u"\"");
}

constexpr Builtin kTextFunctions[] = {
    {u"Char", {1, 1}, Char},     {u"Code", {1, 1}, Code},       {u"Exact", {2, 2}, Exact},
    {u"Filter", {2, 2}, Filter}, {u"Left", {2, 2}, Left},       {u"Length", {1, 1}, Length},
    {u"Lower", {1, 1}, Lower},   {u"Middle", {3, 3}, Middle},   {u"Proper", {1, 1}, Proper},
    {u"Quote", {1, 1}, Quote},   {u"Replace", {4, 4}, Replace}, {u"Right", {2, 2}, Right},
    {u"Trim", {1, 1}, Trim},     {u"Upper", {1, 1}, Upper},
};

}  // namespace

std::span<const Builtin> TextFunctions() { return kTextFunctions; }

}  // namespace calc
