// Conversions and comparisons of text, over ICU.
#include "calc/Unicode.h"

#include <unicode/brkiter.h>
#include <unicode/coll.h>
#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>
#include <unicode/utf16.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <cstdint>
#include <memory>

namespace calc {
namespace {

constexpr UChar32 kReplacement = 0xFFFD;

bool IsAscii(std::u16string_view text) {
  return std::all_of(text.begin(), text.end(), [](char16_t unit) { return unit < 0x80; });
}

char16_t FoldAscii(char16_t unit) { return unit >= u'A' && unit <= u'Z' ? unit + 0x20 : unit; }

int Sign(int value) { return (value > 0) - (value < 0); }

// Ignores case but not accents. nullptr when ICU's data is missing.
const icu::Collator* DictionaryOrder() {
  static const std::unique_ptr<icu::Collator> collator = [] {
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<icu::Collator> result(icu::Collator::createInstance(icu::Locale::getUS(), status));
    if (U_FAILURE(status)) return std::unique_ptr<icu::Collator>();
    result->setStrength(icu::Collator::SECONDARY);
    result->setAttribute(UCOL_NORMALIZATION_MODE, UCOL_ON, status);
    return result;
  }();
  return collator.get();
}

// A view; valid as long as `text`.
icu::UnicodeString Alias(std::u16string_view text) { return {false, text.data(), static_cast<int32_t>(text.size())}; }

std::u16string FromIcu(const icu::UnicodeString& text) {
  return {text.getBuffer(), static_cast<size_t>(text.length())};
}

}  // namespace

std::u16string ToUtf16(std::string_view utf8) {
  std::u16string result;
  result.reserve(utf8.size());
  const auto* bytes = reinterpret_cast<const uint8_t*>(utf8.data());
  for (size_t at = 0; at < utf8.size();) {
    UChar32 point;
    U8_NEXT_OR_FFFD(bytes, at, utf8.size(), point);
    if (point > 0xFFFF) {
      result += U16_LEAD(point);
      result += U16_TRAIL(point);
    } else {
      result += static_cast<char16_t>(point);
    }
  }
  return result;
}

std::string ToUtf8(std::u16string_view utf16) {
  std::string result;
  result.reserve(utf16.size());
  for (size_t at = 0; at < utf16.size();) {
    UChar32 point;
    U16_NEXT(utf16, at, utf16.size(), point);
    if (U_IS_SURROGATE(point)) point = kReplacement;
    char bytes[U8_MAX_LENGTH];
    size_t count = 0;
    U8_APPEND_UNSAFE(bytes, count, point);
    result.append(bytes, count);
  }
  return result;
}

std::u16string FoldCase(std::u16string_view text) {
  std::u16string result(text);
  for (size_t at = 0; at < result.size();) {
    if (result[at] < 0x80) {
      result[at] = FoldAscii(result[at]);
      ++at;
      continue;
    }
    const size_t start = at;
    UChar32 point;
    U16_NEXT(text, at, text.size(), point);
    const UChar32 folded = u_foldCase(point, U_FOLD_CASE_DEFAULT);
    if (folded == point || static_cast<size_t>(U16_LENGTH(folded)) != at - start) continue;
    size_t write = start;
    U16_APPEND_UNSAFE(result, write, folded);
  }
  return result;
}

bool EqualIgnoringCase(std::u16string_view a, std::u16string_view b) {
  return a.size() == b.size() && FoldCase(a) == FoldCase(b);
}

std::u16string EqualityKey(std::u16string_view text) {
  if (IsAscii(text)) return FoldCase(text);
  UErrorCode status = U_ZERO_ERROR;
  const icu::Normalizer2* decomposer = icu::Normalizer2::getNFDInstance(status);
  if (U_FAILURE(status)) return FoldCase(text);
  const icu::UnicodeString decomposed = decomposer->normalize(Alias(text), status);
  return FoldCase(U_FAILURE(status) ? text : FromIcu(decomposed));
}

int CompareTexts(std::u16string_view a, std::u16string_view b) {
  const std::u16string keyA = EqualityKey(a);
  const std::u16string keyB = EqualityKey(b);
  if (keyA == keyB) return 0;
  UErrorCode status = U_ZERO_ERROR;
  const icu::Collator* order = DictionaryOrder();
  const int result = order == nullptr ? 0
                                      : order->compare(a.data(), static_cast<int32_t>(a.size()), b.data(),
                                                       static_cast<int32_t>(b.size()), status);
  // Characters that dictionary order ignores still distinguish texts.
  return result != 0 ? Sign(result) : Sign(keyA.compare(keyB));
}

std::u16string ToUpper(std::u16string_view text) { return FromIcu(Alias(text).toUpper(icu::Locale::getRoot())); }

std::u16string ToLower(std::u16string_view text) { return FromIcu(Alias(text).toLower(icu::Locale::getRoot())); }

std::u16string ToTitle(std::u16string_view text) {
  return FromIcu(Alias(text).toTitle(nullptr, icu::Locale::getRoot()));
}

std::vector<std::u16string_view> Words(std::u16string_view text) {
  UErrorCode status = U_ZERO_ERROR;
  const std::unique_ptr<icu::BreakIterator> breaks(
      icu::BreakIterator::createWordInstance(icu::Locale::getRoot(), status));
  if (U_FAILURE(status)) return {};
  const icu::UnicodeString source = Alias(text);
  breaks->setText(source);
  std::vector<std::u16string_view> words;
  int32_t start = breaks->first();
  for (int32_t end = breaks->next(); end != icu::BreakIterator::DONE; start = end, end = breaks->next()) {
    // Spaces and punctuation also lie between breaks.
    if (breaks->getRuleStatus() < UBRK_WORD_NONE_LIMIT) continue;
    words.push_back(text.substr(static_cast<size_t>(start), static_cast<size_t>(end - start)));
  }
  return words;
}

}  // namespace calc
