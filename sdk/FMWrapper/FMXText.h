// Host text: UTF-16 units of any length.
#pragma once

#include <FMWrapper/FMXClient.h>

namespace fmx {

class CharacterStyle;
class Text;

extern "C" {
Text* FM_Text_Constructor1(_fmxcpt& x);
void FM_Text_Delete(void* self, _fmxcpt& x);
uint32 FM_Text_GetSize(const void* self, _fmxcpt& x);
void FM_Text_Assign(void* self, const char* bytes, int32 encoding, _fmxcpt& x);
void FM_Text_AssignWithLength(void* self, const char* bytes, uint32 length, int32 encoding, _fmxcpt& x);
void FM_Text_AssignUnicode(void* self, const uint16* units, _fmxcpt& x);
void FM_Text_AssignUnicodeWithLength(void* self, const uint16* units, uint32 length, _fmxcpt& x);
void FM_Text_AssignWide(void* self, const wchar_t* text, _fmxcpt& x);
void FM_Text_AssignWideWithLength(void* self, const wchar_t* text, uint32 length, _fmxcpt& x);
void FM_Text_GetBytes(const void* self, char* buffer, uint32 bufferBytes, uint32 position, uint32 units, int32 encoding,
                      _fmxcpt& x);
uint32 FM_Text_GetBytesEx(const void* self, char* buffer, uint32 bufferBytes, uint32 position, uint32 units,
                          int32 encoding, _fmxcpt& x);
void FM_Text_GetUnicode(const void* self, uint16* buffer, uint32 position, uint32 units, _fmxcpt& x);
void FM_Text_SetText(void* self, const Text& other, uint32 position, uint32 size, _fmxcpt& x);
void FM_Text_AppendText(void* self, const Text& other, uint32 position, uint32 size, _fmxcpt& x);
void FM_Text_InsertText(void* self, const Text& other, uint32 position, _fmxcpt& x);
void FM_Text_DeleteText(void* self, uint32 position, uint32 size, _fmxcpt& x);
uint32 FM_Text_Find(const void* self, const Text& other, uint32 position, _fmxcpt& x);
uint32 FM_Text_FindPrev(const void* self, const Text& other, uint32 position, _fmxcpt& x);
uint32 FM_Text_FindIgnoringCase(const void* self, const Text& other, uint32 position, _fmxcpt& x);
uint32 FM_Text_FindPrevIgnoringCase(const void* self, const Text& other, uint32 position, _fmxcpt& x);
void FM_Text_Uppercase(const void* self, _fmxcpt& x);
void FM_Text_Lowercase(const void* self, _fmxcpt& x);
void FM_Text_GetStyle(const void* self, CharacterStyle& style, uint32 position, _fmxcpt& x);
void FM_Text_GetDefaultStyle(const void* self, CharacterStyle& style, _fmxcpt& x);
void FM_Text_SetStyle(void* self, const CharacterStyle& style, uint32 position, uint32 size, _fmxcpt& x);
void FM_Text_RemoveStyle(void* self, const CharacterStyle& style, _fmxcpt& x);
void FM_Text_ResetAllStyleBuffers(void* self, _fmxcpt& x);
bool FM_Text_operatorEQ(const void* self, const Text& other, _fmxcpt& x);
bool FM_Text_operatorNE(const void* self, const Text& other, _fmxcpt& x);
bool FM_Text_operatorLT(const void* self, const Text& other, _fmxcpt& x);
bool FM_Text_operatorLE(const void* self, const Text& other, _fmxcpt& x);
bool FM_Text_operatorGT(const void* self, const Text& other, _fmxcpt& x);
bool FM_Text_operatorGE(const void* self, const Text& other, _fmxcpt& x);
}

class Text {
 public:
  enum Encoding {
    kEncoding_Native = 0,
    kEncoding_UTF8 = 1,
    kEncoding_ASCII_DOS = 2,
    kEncoding_ASCII_Windows = 3,
    kEncoding_ASCII_Mac = 4,
    kEncoding_ISO_8859_1 = 5,
    kEncoding_ShiftJIS_Mac = 6,
    kEncoding_ShiftJIS_Win = 7,
    kEncoding_Korean_Mac = 8,
    kEncoding_Korean_Win = 9,
    kEncoding_Korean_Johab = 10,
    kEncoding_ChineseTrad_Mac = 11,
    kEncoding_ChineseTrad_Win = 12,
    kEncoding_ChineseSimp_Mac = 13,
    kEncoding_ChineseSimp_Win = 14,
    kEncoding_Cyrillic_Mac = 15,
    kEncoding_Cyrillic_Win = 16,
    kEncoding_ISO_8859_5 = 17,
    kEncoding_CentralEurope_Mac = 18,
    kEncoding_EasternEurope_Win = 19,
    kEncoding_ISO_8859_2 = 20,
    kEncoding_Turkish_Mac = 21,
    kEncoding_Turkish_Win = 22,
    kEncoding_ISO_8859_3 = 23,
    kEncoding_ISO_8859_9 = 24,
    kEncoding_Baltic_Win = 25,
    kEncoding_ISO_8859_4 = 26,
    kEncoding_Arabic_Mac = 27,
    kEncoding_Arabic_Win = 28,
    kEncoding_ISO_8859_6 = 29,
    kEncoding_Greek_Mac = 30,
    kEncoding_Greek_Win = 31,
    kEncoding_ISO_8859_7 = 32,
    kEncoding_Hebrew_Mac = 33,
    kEncoding_Hebrew_Win = 34,
    kEncoding_ISO_8859_8 = 35,
    kEncoding_ISO_8859_15 = 36
  };
  static constexpr uint32 kSize_End = 0xFFFFFFFF;
  static constexpr uint32 kSize_Invalid = 0xFFFFFFFF;

  /// Length in UTF-16 units.
  uint32 GetSize() const {
    _fmxcpt x;
    const uint32 result = FM_Text_GetSize(this, x);
    x.Check();
    return result;
  }

  /// `bytes` ends with a zero byte.
  void Assign(const char* bytes, Encoding encoding) {
    _fmxcpt x;
    FM_Text_Assign(this, bytes, encoding, x);
    x.Check();
  }
  void AssignWithLength(const char* bytes, uint32 length, Encoding encoding) {
    _fmxcpt x;
    FM_Text_AssignWithLength(this, bytes, length, encoding, x);
    x.Check();
  }
  void AssignUnicode(const uint16* units) {
    _fmxcpt x;
    FM_Text_AssignUnicode(this, units, x);
    x.Check();
  }
  void AssignUnicodeWithLength(const uint16* units, uint32 length) {
    _fmxcpt x;
    FM_Text_AssignUnicodeWithLength(this, units, length, x);
    x.Check();
  }

  /// Converts `units` units from `position` on; what does not fit is left out. Ends the buffer with a zero byte.
  void GetBytes(char* buffer, uint32 bufferBytes, uint32 position, uint32 units, Encoding encoding) const {
    _fmxcpt x;
    FM_Text_GetBytes(this, buffer, bufferBytes, position, units, encoding, x);
    x.Check();
  }
  /// The same without a zero byte; returns the bytes written.
  uint32 GetBytesEx(char* buffer, uint32 bufferBytes, uint32 position, uint32 units, Encoding encoding) const {
    _fmxcpt x;
    const uint32 result = FM_Text_GetBytesEx(this, buffer, bufferBytes, position, units, encoding, x);
    x.Check();
    return result;
  }
  /// Copies units, without a terminator.
  void GetUnicode(uint16* buffer, uint32 position, uint32 units) const {
    _fmxcpt x;
    FM_Text_GetUnicode(this, buffer, position, units, x);
    x.Check();
  }

  void SetText(const Text& other, uint32 position = 0, uint32 size = kSize_End) {
    _fmxcpt x;
    FM_Text_SetText(this, other, position, size, x);
    x.Check();
  }
  void AppendText(const Text& other, uint32 position = 0, uint32 size = kSize_End) {
    _fmxcpt x;
    FM_Text_AppendText(this, other, position, size, x);
    x.Check();
  }

  void operator delete(void* self) {
    _fmxcpt x;
    FM_Text_Delete(self, x);
  }

 private:
  Text();
  Text(const Text&);
};

class TextUniquePtr : public std::unique_ptr<Text> {
 public:
  TextUniquePtr() {
    _fmxcpt x;
    reset(FM_Text_Constructor1(x));
    x.Check();
  }
};

}  // namespace fmx
