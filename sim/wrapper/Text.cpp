// Host text.
#include <unicode/unistr.h>

#include <algorithm>
#include <cstring>
#include <cwchar>
#include <string_view>

#include "calc/Unicode.h"
#include "wrapper/Host.h"
#include "wrapper/Objects.h"

namespace {

using fmhost::HostCall;
using fmhost::Live;
using fmhost::TextObject;

constexpr fmx::uint32 kNotFound = 0xFFFFFFFF;

std::u16string& UnitsAt(const void* self) { return Live<TextObject>(self).units; }
const std::u16string& UnitsOf(const fmx::Text& text) { return UnitsAt(&text); }

// Positions and sizes beyond the end mean the end, Text::kSize_End among them.
std::u16string_view Part(const std::u16string& units, std::size_t position, std::size_t size) {
  return std::u16string_view(units).substr(std::min(position, units.size()), size);
}

const char16_t* Units(const fmx::uint16* units) { return reinterpret_cast<const char16_t*>(units); }

fmx::uint32 Found(std::size_t position) {
  return position == std::u16string::npos ? kNotFound : static_cast<fmx::uint32>(position);
}

// As many whole characters of the part as fit into `capacity` bytes.
std::string Utf8Part(const void* self, fmx::uint32 position, fmx::uint32 units, std::size_t capacity) {
  std::string utf8 = calc::ToUtf8(Part(UnitsAt(self), position, units));
  if (utf8.size() > capacity) {
    while (capacity > 0 && (static_cast<unsigned char>(utf8[capacity]) & 0xC0) == 0x80) --capacity;
    utf8.resize(capacity);
  }
  return utf8;
}

std::u16string FromWide(std::wstring_view text) {
  icu::UnicodeString units;
  for (const wchar_t c : text) units.append(static_cast<UChar32>(c));
  return {units.getBuffer(), static_cast<std::size_t>(units.length())};
}

void ChangeCase(const void* self, icu::UnicodeString& (icu::UnicodeString::*change)()) {
  auto& units = UnitsAt(self);
  icu::UnicodeString changed(units.data(), static_cast<std::int32_t>(units.size()));
  (changed.*change)();
  units.assign(changed.getBuffer(), static_cast<std::size_t>(changed.length()));
}

}  // namespace

std::u16string fmhost::TextOf(const fmx::Text& text) { return UnitsOf(text); }

namespace fmx {

FM_API Text* FM_Text_Constructor1(_fmxcpt& x) {
  return HostCall(__func__, x, [&] { return reinterpret_cast<Text*>(fmhost::Make<TextObject>()); });
}

FM_API void FM_Text_Delete(void* self, _fmxcpt&) { fmhost::Delete<TextObject>(__func__, self); }

FM_API uint32 FM_Text_GetSize(const void* self, _fmxcpt& x) {
  return HostCall(__func__, x, [&] { return static_cast<uint32>(UnitsAt(self).size()); });
}

FM_API void FM_Text_Assign(void* self, const char* bytes, int32, _fmxcpt& x) {
  HostCall(__func__, x, [&] { UnitsAt(self) = calc::ToUtf16(bytes); });
}

FM_API void FM_Text_AssignWithLength(void* self, const char* bytes, uint32 length, int32, _fmxcpt& x) {
  HostCall(__func__, x, [&] { UnitsAt(self) = calc::ToUtf16({bytes, length}); });
}

FM_API void FM_Text_AssignUnicode(void* self, const uint16* units, _fmxcpt& x) {
  HostCall(__func__, x, [&] { UnitsAt(self) = Units(units); });
}

FM_API void FM_Text_AssignUnicodeWithLength(void* self, const uint16* units, uint32 length, _fmxcpt& x) {
  HostCall(__func__, x, [&] { UnitsAt(self).assign(Units(units), length); });
}

FM_API void FM_Text_AssignWide(void* self, const wchar_t* text, _fmxcpt& x) {
  HostCall(__func__, x, [&] { UnitsAt(self) = FromWide(text); });
}

FM_API void FM_Text_AssignWideWithLength(void* self, const wchar_t* text, uint32 length, _fmxcpt& x) {
  HostCall(__func__, x, [&] { UnitsAt(self) = FromWide({text, length}); });
}

FM_API void FM_Text_GetBytes(const void* self, char* buffer, uint32 bufferBytes, uint32 position, uint32 units, int32,
                             _fmxcpt& x) {
  HostCall(__func__, x, [&] {
    if (bufferBytes == 0) return;
    const std::string utf8 = Utf8Part(self, position, units, bufferBytes - 1);
    std::memcpy(buffer, utf8.c_str(), utf8.size() + 1);
  });
}

FM_API uint32 FM_Text_GetBytesEx(const void* self, char* buffer, uint32 bufferBytes, uint32 position, uint32 units,
                                 int32, _fmxcpt& x) {
  return HostCall(__func__, x, [&] {
    const std::string utf8 = Utf8Part(self, position, units, bufferBytes);
    std::memcpy(buffer, utf8.data(), utf8.size());
    return static_cast<uint32>(utf8.size());
  });
}

FM_API void FM_Text_GetUnicode(const void* self, uint16* buffer, uint32 position, uint32 units, _fmxcpt& x) {
  HostCall(__func__, x, [&] {
    const auto part = Part(UnitsAt(self), position, units);
    std::copy(part.begin(), part.end(), buffer);
  });
}

FM_API void FM_Text_SetText(void* self, const Text& other, uint32 position, uint32 size, _fmxcpt& x) {
  HostCall(__func__, x, [&] { UnitsAt(self) = std::u16string(Part(UnitsOf(other), position, size)); });
}

FM_API void FM_Text_AppendText(void* self, const Text& other, uint32 position, uint32 size, _fmxcpt& x) {
  HostCall(__func__, x, [&] { UnitsAt(self) += std::u16string(Part(UnitsOf(other), position, size)); });
}

FM_API void FM_Text_InsertText(void* self, const Text& other, uint32 position, _fmxcpt& x) {
  HostCall(__func__, x, [&] {
    auto& units = UnitsAt(self);
    units.insert(std::min<std::size_t>(position, units.size()), std::u16string(UnitsOf(other)));
  });
}

FM_API void FM_Text_DeleteText(void* self, uint32 position, uint32 size, _fmxcpt& x) {
  HostCall(__func__, x, [&] {
    auto& units = UnitsAt(self);
    units.erase(std::min<std::size_t>(position, units.size()), size);
  });
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

#define TEXT_COMPARISON(name, op)                                                       \
  FM_API bool FM_Text_operator##name(const void* self, const Text& other, _fmxcpt& x) { \
    return HostCall(__func__, x, [&] { return UnitsAt(self) op UnitsOf(other); });      \
  }
TEXT_COMPARISON(EQ, ==)
TEXT_COMPARISON(NE, !=)
TEXT_COMPARISON(LT, <)
TEXT_COMPARISON(LE, <=)
TEXT_COMPARISON(GT, >)
TEXT_COMPARISON(GE, >=)
#undef TEXT_COMPARISON

}  // namespace fmx
