// Host values: a text, number, date... with its native type and locale.
#pragma once

#include <FMWrapper/FMXClient.h>
#include <FMWrapper/FMXTextStyle.h>

namespace fmx {

class BinaryData;
class Data;
class DateTime;
class ExprEnv;
class FixPt;
class Locale;
class Text;

extern "C" {
Data* FM_Data_Constructor1(_fmxcpt& x);
void FM_Data_Delete(void* self, _fmxcpt& x);
bool FM_Data_IsEmpty(const void* self, _fmxcpt& x);
bool FM_Data_IsValid(const void* self, _fmxcpt& x);
bool FM_Data_IsFindRequest(const void* self, _fmxcpt& x);
void FM_Data_Clear(void* self, int32 type, _fmxcpt& x);
int32 FM_Data_GetNativeType(const void* self, _fmxcpt& x);
void FM_Data_ConvertData(void* self, int32 type, _fmxcpt& x);
const Text* FM_Data_GetAsText(const void* self, _fmxcpt& x);
const FixPt* FM_Data_GetAsNumber(const void* self, _fmxcpt& x);
bool FM_Data_GetAsBoolean(const void* self, _fmxcpt& x);
const Locale* FM_Data_GetLocale(const void* self, _fmxcpt& x);
errcode FM_Data_SetAsText(void* self, const Text& text, const Locale& locale, int32 type, _fmxcpt& x);
void FM_Data_SetAsNumber(void* self, const FixPt& number, int32 type, _fmxcpt& x);
const DateTime* FM_Data_GetAsDate(const void* self, _fmxcpt& x);
const DateTime* FM_Data_GetAsTime(const void* self, _fmxcpt& x);
const DateTime* FM_Data_GetAsTimeStamp(const void* self, _fmxcpt& x);
void FM_Data_SetAsDate(void* self, const DateTime& date, int32 type, _fmxcpt& x);
void FM_Data_SetAsTime(void* self, const DateTime& time, int32 type, _fmxcpt& x);
void FM_Data_SetAsTimeStamp(void* self, const DateTime& timestamp, int32 type, _fmxcpt& x);
void FM_Data_SetDateTime(void* self, const DateTime& moment, int32 part, int32 type, _fmxcpt& x);
const BinaryData* FM_Data_GetBinaryData(const void* self, _fmxcpt& x);
void FM_Data_SetBinaryData(void* self, const BinaryData& content, bool convert, _fmxcpt& x);
CharacterStyle::FontID FM_Data_GetFontID(const void* self, const Text& name, CharacterStyle::FontScript script,
                                         const ExprEnv& env, _fmxcpt& x);
bool FM_Data_GetFontInfo(const void* self, CharacterStyle::FontID font, Text& name, CharacterStyle::FontScript& script,
                         const ExprEnv& env, _fmxcpt& x);
CharacterStyle::FontID FM_Data_GetPostscriptFontID(const void* self, const Text& name, const ExprEnv& env, _fmxcpt& x);
bool FM_Data_GetPostscriptFontInfo(const void* self, CharacterStyle::FontID font, Text& name, const ExprEnv& env,
                                   _fmxcpt& x);
}

class Data {
 public:
  enum DataType {
    kDTInvalid = 0,
    kDTText = 1,
    kDTNumber = 2,
    kDTDate = 3,
    kDTTime = 4,
    kDTTimeStamp = 5,
    kDTBinary = 6,
    kDTBoolean = 7
  };

  bool IsEmpty() const {
    _fmxcpt x;
    const bool result = FM_Data_IsEmpty(this, x);
    x.Check();
    return result;
  }
  DataType GetNativeType() const {
    _fmxcpt x;
    const int32 result = FM_Data_GetNativeType(this, x);
    x.Check();
    return static_cast<DataType>(result);
  }

  /// The text form. The value owns it; it is valid until the value changes.
  const Text& GetAsText() const {
    _fmxcpt x;
    const Text* result = FM_Data_GetAsText(this, x);
    x.Check();
    return *result;
  }
  /// The number form, owned as the text form is.
  const FixPt& GetAsNumber() const {
    _fmxcpt x;
    const FixPt* result = FM_Data_GetAsNumber(this, x);
    x.Check();
    return *result;
  }
  bool GetAsBoolean() const {
    _fmxcpt x;
    const bool result = FM_Data_GetAsBoolean(this, x);
    x.Check();
    return result;
  }
  const Locale& GetLocale() const {
    _fmxcpt x;
    const Locale* result = FM_Data_GetLocale(this, x);
    x.Check();
    return *result;
  }

  errcode SetAsText(const Text& text, const Locale& locale, DataType type = kDTText) {
    _fmxcpt x;
    const errcode result = FM_Data_SetAsText(this, text, locale, type, x);
    x.Check();
    return result;
  }
  void SetAsNumber(const FixPt& number, DataType type = kDTNumber) {
    _fmxcpt x;
    FM_Data_SetAsNumber(this, number, type, x);
    x.Check();
  }

  void operator delete(void* self) {
    _fmxcpt x;
    FM_Data_Delete(self, x);
  }

 private:
  Data();
  Data(const Data&);
};

class DataUniquePtr : public std::unique_ptr<Data> {
 public:
  DataUniquePtr() {
    _fmxcpt x;
    reset(FM_Data_Constructor1(x));
    x.Check();
  }
};

}  // namespace fmx
