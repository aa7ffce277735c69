// Host text.
#include <unicode/unistr.h>

#include <algorithm>
#include <cstring>
#include <cwchar>
#include <stdexcept>
#include <string_view>

#include "calc/Unicode.h"
#include "wrapper/Encodings.h"
#include "wrapper/Host.h"
#include "wrapper/Objects.h"

namespace {

using wrapper::HostCall;
using wrapper::Live;
using wrapper::TextObject;

constexpr fmx::uint32 kNotFound = 0xFFFFFFFF;

TextObject& TextAt(const void* self) { return Live<TextObject>(self); }
const std::u16string& UnitsAt(const void* self) { return TextAt(self).units; }
const std::u16string& UnitsOf(const fmx::Text& text) { return UnitsAt(&text); }
wrapper::Style& StyleOf(const fmx::CharacterStyle& style) { return Live<wrapper::CharacterStyleObject>(&style).style; }

std::u16string_view Part(const std::u16string& units, std::size_t position, std::size_t size) {
  return std::u16string_view(units).substr(std::min(position, units.size()), size);
}

const char16_t* Units(const fmx::uint16* units) { return reinterpret_cast<const char16_t*>(units); }

fmx::uint32 Found(std::size_t position) {
  return position == std::u16string::npos ? kNotFound : static_cast<fmx::uint32>(position);
}

std::u16string FromWide(std::wstring_view text) {
  icu::UnicodeString units;
  for (const wchar_t c : text) units.append(static_cast<UChar32>(c));
  return {units.getBuffer(), static_cast<std::size_t>(units.length())};
}

void ChangeCase(const void* self, icu::UnicodeString& (icu::UnicodeString::*change)()) {
  auto& text = TextAt(self);
  const auto& units = text.units;
  icu::UnicodeString changed(units.data(), static_cast<std::int32_t>(units.size()));
  (changed.*change)();
  const bool sameLength = static_cast<std::size_t>(changed.length()) == units.size();
  text.units.assign(changed.getBuffer(), static_cast<std::size_t>(changed.length()));
  if (!sameLength) text.styles.clear();
}

}  // namespace

namespace wrapper {

std::u16string TextOf(const fmx::Text& text) { return UnitsOf(text); }

void TextObject::Assign(std::u16string newUnits) {
  units = std::move(newUnits);
  styles.clear();
}

void TextObject::Replace(std::size_t position, std::size_t count, const TextObject& other, std::size_t from,
                         std::size_t size) {
  position = std::min(position, units.size());
  count = std::min(count, units.size() - position);
  from = std::min(from, other.units.size());
  size = std::min(size, other.units.size() - from);
  const auto newUnits = other.units.substr(from, size);  // `other` may be this text
  if (!styles.empty() || !other.styles.empty()) {
    styles.resize(units.size());
    std::vector<Style> newStyles(size);
    if (!other.styles.empty()) std::copy_n(other.styles.begin() + static_cast<long>(from), size, newStyles.begin());
    const auto at = styles.erase(styles.begin() + static_cast<long>(position),
                                 styles.begin() + static_cast<long>(position + count));
    styles.insert(at, newStyles.begin(), newStyles.end());
  }
  units.replace(position, count, newUnits);
}

}  // namespace wrapper

namespace fmx {

FM_API Text* FM_Text_Constructor1(_fmxcpt& x) {
  return HostCall(__func__, x, [&] { return wrapper::Make<TextObject>(); });
}

FM_API void FM_Text_Delete(void* self, _fmxcpt&) { wrapper::Delete<TextObject>(__func__, self); }

FM_API uint32 FM_Text_GetSize(const void* self, _fmxcpt& x) {
  return HostCall(__func__, x, [&] { return static_cast<uint32>(UnitsAt(self).size()); });
}

FM_API void FM_Text_Assign(void* self, const char* bytes, int32 encoding, _fmxcpt& x) {
  HostCall(__func__, x, [&] { TextAt(self).Assign(wrapper::Decode(bytes, encoding)); });
}

FM_API void FM_Text_AssignWithLength(void* self, const char* bytes, uint32 length, int32 encoding, _fmxcpt& x) {
  HostCall(__func__, x, [&] { TextAt(self).Assign(wrapper::Decode({bytes, length}, encoding)); });
}

FM_API void FM_Text_AssignUnicode(void* self, const uint16* units, _fmxcpt& x) {
  HostCall(__func__, x, [&] { TextAt(self).Assign(Units(units)); });
}

FM_API void FM_Text_AssignUnicodeWithLength(void* self, const uint16* units, uint32 length, _fmxcpt& x) {
  HostCall(__func__, x, [&] { TextAt(self).Assign({Units(units), length}); });
}

FM_API void FM_Text_AssignWide(void* self, const wchar_t* text, _fmxcpt& x) {
  HostCall(__func__, x, [&] { TextAt(self).Assign(FromWide(text)); });
}

FM_API void FM_Text_AssignWideWithLength(void* self, const wchar_t* text, uint32 length, _fmxcpt& x) {
  HostCall(__func__, x, [&] { TextAt(self).Assign(FromWide({text, length})); });
}

FM_API void FM_Text_GetBytes(const void* self, char* buffer, uint32 bufferBytes, uint32 position, uint32 units,
                             int32 encoding, _fmxcpt& x) {
  HostCall(__func__, x, [&] {
    if (bufferBytes == 0) return;
    const auto bytes = wrapper::EncodeWithin(Part(UnitsAt(self), position, units), encoding, bufferBytes - 1);
    std::memcpy(buffer, bytes.c_str(), bytes.size() + 1);
  });
}

FM_API uint32 FM_Text_GetBytesEx(const void* self, char* buffer, uint32 bufferBytes, uint32 position, uint32 units,
                                 int32 encoding, _fmxcpt& x) {
  return HostCall(__func__, x, [&] {
    const auto bytes = wrapper::EncodeWithin(Part(UnitsAt(self), position, units), encoding, bufferBytes);
    bytes.copy(buffer, bytes.size());
    return static_cast<uint32>(bytes.size());
  });
}

FM_API void FM_Text_GetUnicode(const void* self, uint16* buffer, uint32 position, uint32 units, _fmxcpt& x) {
  HostCall(__func__, x, [&] {
    const auto part = Part(UnitsAt(self), position, units);
    std::copy(part.begin(), part.end(), buffer);
  });
}

FM_API void FM_Text_SetText(void* self, const Text& other, uint32 position, uint32 size, _fmxcpt& x) {
  HostCall(__func__, x, [&] { TextAt(self).Replace(0, Text::kSize_End, TextAt(&other), position, size); });
}

FM_API void FM_Text_AppendText(void* self, const Text& other, uint32 position, uint32 size, _fmxcpt& x) {
  HostCall(__func__, x, [&] { TextAt(self).Replace(Text::kSize_End, 0, TextAt(&other), position, size); });
}

FM_API void FM_Text_InsertText(void* self, const Text& other, uint32 position, _fmxcpt& x) {
  HostCall(__func__, x, [&] { TextAt(self).Replace(position, 0, TextAt(&other), 0, Text::kSize_End); });
}

FM_API void FM_Text_DeleteText(void* self, uint32 position, uint32 size, _fmxcpt& x) {
  HostCall(__func__, x, [&] { TextAt(self).Replace(position, size, {}, 0, 0); });
}

FM_API uint32 FM_Text_Find(const void* self, const Text& other, uint32 position, _fmxcpt& x) {
  return HostCall(__func__, x, [&] { return Found(UnitsAt(self).find(UnitsOf(other), position)); });
}

FM_API uint32 FM_Text_FindPrev(const void* self, const Text& other, uint32 position, _fmxcpt& x) {
  return HostCall(__func__, x, [&] { return Found(UnitsAt(self).rfind(UnitsOf(other), position)); });
}

FM_API uint32 FM_Text_FindIgnoringCase(const void* self, const Text& other, uint32 position, _fmxcpt& x) {
  return HostCall(__func__, x,
                  [&] { return Found(calc::FoldCase(UnitsAt(self)).find(calc::FoldCase(UnitsOf(other)), position)); });
}

FM_API uint32 FM_Text_FindPrevIgnoringCase(const void* self, const Text& other, uint32 position, _fmxcpt& x) {
  return HostCall(__func__, x,
                  [&] { return Found(calc::FoldCase(UnitsAt(self)).rfind(calc::FoldCase(UnitsOf(other)), position)); });
}

FM_API void FM_Text_Uppercase(const void* self, _fmxcpt& x) {
  HostCall(__func__, x, [&] { ChangeCase(self, &icu::UnicodeString::toUpper); });
}

FM_API void FM_Text_Lowercase(const void* self, _fmxcpt& x) {
  HostCall(__func__, x, [&] { ChangeCase(self, &icu::UnicodeString::toLower); });
}

FM_API void FM_Text_GetStyle(const void* self, CharacterStyle& style, uint32 position, _fmxcpt& x) {
  HostCall(__func__, x, [&] {
    const auto& text = TextAt(self);
    if (position >= text.units.size()) throw std::out_of_range("no such character");
    StyleOf(style) = text.styles.empty() ? wrapper::Style() : text.styles[position];
  });
}

FM_API void FM_Text_GetDefaultStyle(const void* self, CharacterStyle& style, _fmxcpt& x) {
  HostCall(__func__, x, [&] {
    TextAt(self);
    StyleOf(style) = {};
  });
}

FM_API void FM_Text_SetStyle(void* self, const CharacterStyle& style, uint32 position, uint32 size, _fmxcpt& x) {
  HostCall(__func__, x, [&] {
    auto& text = TextAt(self);
    text.styles.resize(text.units.size());
    const std::size_t first = std::min<std::size_t>(position, text.units.size());
    const std::size_t end = first + std::min<std::size_t>(size, text.units.size() - first);
    for (std::size_t at = first; at < end; ++at) text.styles[at].Add(StyleOf(style));
  });
}

FM_API void FM_Text_RemoveStyle(void* self, const CharacterStyle& style, _fmxcpt& x) {
  HostCall(__func__, x, [&] {
    for (auto& unitStyle : TextAt(self).styles) unitStyle.Remove(StyleOf(style));
  });
}

FM_API void FM_Text_ResetAllStyleBuffers(void* self, _fmxcpt& x) {
  HostCall(__func__, x, [&] { TextAt(self).styles.clear(); });
}

FM_ORDER(Text, Text)

}  // namespace fmx
