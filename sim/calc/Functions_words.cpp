// Words.
#include <algorithm>
#include <string>
#include <vector>

#include "calc/Functions.h"
#include "calc/Unicode.h"

namespace calc {
namespace {

// The text from word `first` (from 0) through word `first + count - 1`, as far as they exist.
Value WordRange(const std::vector<std::u16string_view>& words, long long first, long long count) {
  const auto size = static_cast<long long>(words.size());
  first = std::clamp(first, 0LL, size);
  count = std::clamp(count, 0LL, size - first);
  if (count == 0) return {};
  const std::u16string_view& last = words[static_cast<size_t>(first + count - 1)];
  return Value::OfText(std::u16string(words[static_cast<size_t>(first)].data(), last.data() + last.size()));
}

Value WordCount(Arguments arguments) {
  return Value::OfNumber(static_cast<long long>(Words(arguments[0].AsText()).size()));
}

Value LeftWords(Arguments arguments) {
  return WordRange(Words(arguments[0].AsText()), 0, arguments[1].AsNumber().ToInteger());
}

Value RightWords(Arguments arguments) {
  const auto words = Words(arguments[0].AsText());
  const auto size = static_cast<long long>(words.size());
  const long long count = std::clamp(arguments[1].AsNumber().ToInteger(), 0LL, size);
  return WordRange(words, size - count, count);
}

Value MiddleWords(Arguments arguments) {
  const long long start = std::max(1LL, arguments[1].AsNumber().ToInteger());
  return WordRange(Words(arguments[0].AsText()), start - 1, arguments[2].AsNumber().ToInteger());
}

constexpr Builtin kWordFunctions[] = {
    {u"LeftWords", {2, 2}, LeftWords},
    {u"MiddleWords", {3, 3}, MiddleWords},
    {u"RightWords", {2, 2}, RightWords},
    {u"WordCount", {1, 1}, WordCount},
};

}  // namespace

std::span<const Builtin> WordFunctions() { return kWordFunctions; }

}  // namespace calc
