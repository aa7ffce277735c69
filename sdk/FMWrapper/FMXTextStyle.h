// Text styles and colours.
#pragma once

#include <FMWrapper/FMXClient.h>

namespace fmx {

class CharacterStyle;

extern "C" {
void FM_Color_Delete(void* self, _fmxcpt& x);
void FM_CharacterStyle_Delete(void* self, _fmxcpt& x);
}

/// The font, size, faces and colour of characters. Each is enabled or not: only enabled ones are set in a text.
class CharacterStyle {
 public:
  class Color;

  using FontID = uint16;
  using FontScript = uint16;
  using FontSize = uint16;
  using Face = uint16;
  using ColorChannel = uchar;
  using ColorChannel16 = uint16;

  enum {
    kRoman = 0,
    kGreek = 1,
    kCyrillic = 2,
    kCentralEurope = 3,
    kShiftJIS = 4,
    kTraditionalChinese = 5,
    kSimplifiedChinese = 6,
    kOEM = 7,
    kSymbol = 8,
    kNative = 9,
    kOther = 10,
    kKorean = 11,
    kDingbats = 12,
    kTurkish = 13,
    kInvalidFont = 0xFFFF
  };

  enum { kColorChannel_ON = 255, kColorChannel_OFF = 0 };

  enum {
    kFace_Plain = 0,
    kFace_Strikethrough = 1,
    kFace_SmallCaps = 2,
    kFace_Superscript = 4,
    kFace_Subscript = 8,
    kFace_Uppercase = 16,
    kFace_Lowercase = 32,
    kFace_Titlecase = kFace_Uppercase | kFace_Lowercase,
    kFace_WordUnderline = 64,
    kFace_DoubleUnderline = 128,
    kFace_Bold = 256,
    kFace_Italic = 512,
    kFace_Underline = 1024,
    kFace_Outline = 2048,
    kFace_Shadow = 4096,
    kFace_Condense = 8192,
    kFace_Extend = 16384,
    kFace_AllStyles = 32767
  };

  void operator delete(void* self) {
    _fmxcpt x;
    FM_CharacterStyle_Delete(self, x);
  }

 private:
  CharacterStyle();
  CharacterStyle(const CharacterStyle&);
};

class CharacterStyle::Color {
 public:
  void operator delete(void* self) {
    _fmxcpt x;
    FM_Color_Delete(self, x);
  }

 private:
  Color();
  Color(const Color&);
};

extern "C" {
CharacterStyle::Color* FM_Color_Constructor1(_fmxcpt& x);
CharacterStyle::Color* FM_Color_Constructor2(CharacterStyle::ColorChannel red, CharacterStyle::ColorChannel green,
                                             CharacterStyle::ColorChannel blue, CharacterStyle::ColorChannel alpha,
                                             _fmxcpt& x);
CharacterStyle::Color* FM_Color_Constructor3(const CharacterStyle::Color& other, _fmxcpt& x);
CharacterStyle::Color* FM_Color_operatorAS(void* self, const CharacterStyle::Color& other, _fmxcpt& x);
bool FM_Color_operatorEQ(const void* self, const CharacterStyle::Color& other, _fmxcpt& x);
bool FM_Color_operatorNE(const void* self, const CharacterStyle::Color& other, _fmxcpt& x);
const CharacterStyle::Color* FM_Color_Black(_fmxcpt& x) throw();
const CharacterStyle::Color* FM_Color_White(_fmxcpt& x) throw();
CharacterStyle::ColorChannel FM_Color_GetRed(const void* self, _fmxcpt& x);
CharacterStyle::ColorChannel FM_Color_GetGreen(const void* self, _fmxcpt& x);
CharacterStyle::ColorChannel FM_Color_GetBlue(const void* self, _fmxcpt& x);
CharacterStyle::ColorChannel FM_Color_GetAlpha(const void* self, _fmxcpt& x);
CharacterStyle::ColorChannel16 FM_Color_GetRedUpsample(const void* self, _fmxcpt& x);
CharacterStyle::ColorChannel16 FM_Color_GetGreenUpsample(const void* self, _fmxcpt& x);
CharacterStyle::ColorChannel16 FM_Color_GetBlueUpsample(const void* self, _fmxcpt& x);
CharacterStyle::ColorChannel16 FM_Color_GetAlphaUpsample(const void* self, _fmxcpt& x);
void FM_Color_SetRed(void* self, CharacterStyle::ColorChannel value, _fmxcpt& x);
void FM_Color_SetGreen(void* self, CharacterStyle::ColorChannel value, _fmxcpt& x);
void FM_Color_SetBlue(void* self, CharacterStyle::ColorChannel value, _fmxcpt& x);
void FM_Color_SetAlpha(void* self, CharacterStyle::ColorChannel value, _fmxcpt& x);

CharacterStyle* FM_CharacterStyle_Constructor1(_fmxcpt& x);
CharacterStyle* FM_CharacterStyle_Constructor2(CharacterStyle::FontID font, CharacterStyle::Face face,
                                               CharacterStyle::FontSize size, const CharacterStyle::Color& color,
                                               _fmxcpt& x);
CharacterStyle* FM_CharacterStyle_Constructor3(const CharacterStyle& other, _fmxcpt& x);
CharacterStyle* FM_CharacterStyle_operatorAS(void* self, const CharacterStyle& other, _fmxcpt& x);
bool FM_CharacterStyle_operatorEQ(const void* self, const CharacterStyle& other, _fmxcpt& x);
bool FM_CharacterStyle_operatorNE(const void* self, const CharacterStyle& other, _fmxcpt& x);
CharacterStyle::FontID FM_CharacterStyle_GetFont(const void* self, _fmxcpt& x);
void FM_CharacterStyle_SetFont(void* self, CharacterStyle::FontID font, _fmxcpt& x);
void FM_CharacterStyle_EnableFont(void* self, _fmxcpt& x);
void FM_CharacterStyle_DisableFont(void* self, _fmxcpt& x);
bool FM_CharacterStyle_IsFontEnabled(const void* self, _fmxcpt& x);
CharacterStyle::FontSize FM_CharacterStyle_GetSize(const void* self, _fmxcpt& x);
void FM_CharacterStyle_SetSize(void* self, CharacterStyle::FontSize size, _fmxcpt& x);
void FM_CharacterStyle_EnableSize(void* self, _fmxcpt& x);
void FM_CharacterStyle_DisableSize(void* self, _fmxcpt& x);
bool FM_CharacterStyle_IsSizeEnabled(const void* self, _fmxcpt& x);
CharacterStyle::Face FM_CharacterStyle_GetFace(const void* self, _fmxcpt& x);
void FM_CharacterStyle_SetFace(void* self, CharacterStyle::Face face, _fmxcpt& x);
void FM_CharacterStyle_EnableFace(void* self, CharacterStyle::Face face, _fmxcpt& x);
void FM_CharacterStyle_DisableFace(void* self, CharacterStyle::Face face, _fmxcpt& x);
void FM_CharacterStyle_DisableAllFaces(void* self, _fmxcpt& x);
bool FM_CharacterStyle_IsFaceEnabled(const void* self, CharacterStyle::Face face, _fmxcpt& x);
bool FM_CharacterStyle_IsAnyFaceEnabled(const void* self, _fmxcpt& x);
const CharacterStyle::Color* FM_CharacterStyle_GetColor(const void* self, _fmxcpt& x);
void FM_CharacterStyle_SetColor(void* self, const CharacterStyle::Color& color, _fmxcpt& x);
void FM_CharacterStyle_EnableColor(void* self, _fmxcpt& x);
void FM_CharacterStyle_DisableColor(void* self, _fmxcpt& x);
bool FM_CharacterStyle_IsColorEnabled(const void* self, _fmxcpt& x);
void FM_CharacterStyle_GetFontInformation(void* self, CharacterStyle::FontID& font, CharacterStyle::Face& face,
                                          CharacterStyle::FontSize& size, _fmxcpt& x);
void FM_CharacterStyle_SetFontInformation(void* self, CharacterStyle::FontID font, CharacterStyle::Face face,
                                          CharacterStyle::FontSize size, _fmxcpt& x);
void FM_CharacterStyle_DisableAll(void* self, _fmxcpt& x);
bool FM_CharacterStyle_IsAllDisabled(const void* self, _fmxcpt& x);
}

}  // namespace fmx
