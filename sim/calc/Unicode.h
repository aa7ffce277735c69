// Conversions between UTF-8 and UTF-16, and FileMaker's text comparisons. Based on ICU.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace calc {

/// Invalid bytes or units become U+FFFD.
std::u16string ToUtf16(std::string_view utf8);
std::string ToUtf8(std::u16string_view utf16);

constexpr bool IsDigit(char16_t unit) { return unit >= u'0' && unit <= u'9'; }

/// Simple case folding that keeps the number of units, for names and case-insensitive searches.
std::u16string FoldCase(std::u16string_view text);
bool EqualIgnoringCase(std::u16string_view a, std::u16string_view b);

/// Texts that FileMaker considers equal have equal keys: case and the composition of accents are ignored.
std::u16string EqualityKey(std::u16string_view text);
/// Negative, zero or positive: the order of a dictionary. Zero only for texts with equal keys.
int CompareTexts(std::u16string_view a, std::u16string_view b);

/// Language-independent: no Turkish i.
std::u16string ToUpper(std::u16string_view text);
std::u16string ToLower(std::u16string_view text);
/// The first letter of each word in upper case, the others in lower case.
std::u16string ToTitle(std::u16string_view text);

/// The words of `text`, as views into it: letters and digits with the signs that belong between them ("1.5", "don't").
std::vector<std::u16string_view> Words(std::u16string_view text);

}  // namespace calc
