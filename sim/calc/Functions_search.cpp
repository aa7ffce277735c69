// Searching and replacing. Occurrences never overlap.
#include <algorithm>
#include <string>
#include <utility>

#include "calc/Errors.h"
#include "calc/Functions.h"
#include "calc/Searcher.h"
#include "calc/Unicode.h"

namespace calc {
namespace {

// The offset of occurrence number `count` that starts at `from` or later.
size_t FindOccurrence(std::u16string_view text, std::u16string_view pattern, size_t from, long long count) {
  const Searcher searcher(pattern);
  size_t found = searcher.Find(text, from);
  for (; count > 1 && found != text.npos; --count) found = searcher.Find(text, found + pattern.size());
  return found;
}

// The same, counting backwards from the last occurrence that starts at `last` or earlier.
size_t FindBackwards(std::u16string_view text, std::u16string_view pattern, size_t last, long long count) {
  std::u16string reversedText(text.substr(0, last + std::min(pattern.size(), text.size() - last)));
  std::u16string reversedPattern(pattern);
  std::reverse(reversedText.begin(), reversedText.end());
  std::reverse(reversedPattern.begin(), reversedPattern.end());
  const size_t found = FindOccurrence(reversedText, reversedPattern, 0, count);
  return found == text.npos ? found : reversedText.size() - found - pattern.size();
}

Value Position(Arguments arguments) {
  const std::u16string text = FoldCase(arguments[0].AsText());
  const std::u16string pattern = FoldCase(arguments[1].AsText());
  const long long most = static_cast<long long>(text.size()) + 1;  // no text holds more occurrences
  const long long count = std::clamp(arguments[3].AsNumber().ToInteger(), -most, most);
  if (text.empty() || pattern.empty() || count == 0) return Value::OfNumber(0);
  const auto start = static_cast<size_t>(std::max(1LL, arguments[2].AsNumber().ToInteger()) - 1);
  const size_t found = count > 0 ? FindOccurrence(text, pattern, start, count)
                                 : FindBackwards(text, pattern, std::min(start, text.size() - 1), -count);
  return Value::OfNumber(found == text.npos ? 0 : static_cast<long long>(found) + 1);
}

Value PatternCount(Arguments arguments) {
  const std::u16string text = FoldCase(arguments[0].AsText());
  const std::u16string pattern = FoldCase(arguments[1].AsText());
  if (pattern.empty()) return Value::OfNumber(0);
  const Searcher searcher(pattern);
  long long count = 0;
  for (size_t at = searcher.Find(text, 0); at != text.npos; at = searcher.Find(text, at + pattern.size())) ++count;
  return Value::OfNumber(count);
}

// False when the result would be too long.
bool ReplaceAll(std::u16string& text, std::u16string_view pattern, std::u16string_view replacement) {
  if (pattern.empty()) return true;
  const Searcher searcher(pattern);
  const std::u16string_view source = text;
  std::u16string result;
  size_t done = 0;
  for (size_t at = searcher.Find(source, 0); at != source.npos; at = searcher.Find(source, done)) {
    result += source.substr(done, at - done);
    result += replacement;
    done = at + pattern.size();
    if (result.size() > kMaxTextLength) return false;
  }
  if (done == 0) return true;
  result += source.substr(done);
  text = std::move(result);
  return true;
}

Value Substitute(Arguments arguments) {
  std::u16string text = arguments[0].AsText();
  for (size_t at = 1; at + 1 < arguments.size(); at += 2) {
    if (!ReplaceAll(text, arguments[at].AsText(), arguments[at + 1].AsText())) {
      return Value::OfError(errors::kOutOfRange);
    }
  }
  return Value::OfText(std::move(text));
}

constexpr Builtin kSearchFunctions[] = {
    {u"PatternCount", {2, 2}, PatternCount},
    {u"Position", {4, 4}, Position},
    {u"Substitute", {3, 3, 2}, Substitute},
};

}  // namespace

std::span<const Builtin> SearchFunctions() { return kSearchFunctions; }

}  // namespace calc
