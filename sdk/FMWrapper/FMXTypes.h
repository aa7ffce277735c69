// Four-character identifiers and locales.
#pragma once

#include <FMWrapper/FMXClient.h>

namespace fmx {

class QuadChar;
class Locale;

extern "C" {
QuadChar* FM_QuadChar_Constructor1(_fmxcpt& x);
QuadChar* FM_QuadChar_Constructor2(char c0, char c1, char c2, char c3, _fmxcpt& x);
QuadChar* FM_QuadChar_Constructor3(const QuadChar& other, _fmxcpt& x);
const QuadChar* FM_QuadChar_operatorAS(void* self, const QuadChar& other, _fmxcpt& x);
uchar FM_QuadChar_operatorAR(void* self, int index, _fmxcpt& x);
uchar FM_QuadChar_operatorCAR(const void* self, int index, _fmxcpt& x);
bool FM_QuadChar_operatorEQ(const void* self, const QuadChar& other, _fmxcpt& x);
bool FM_QuadChar_operatorNE(const void* self, const QuadChar& other, _fmxcpt& x);
bool FM_QuadChar_operatorLT(const void* self, const QuadChar& other, _fmxcpt& x);
bool FM_QuadChar_operatorLE(const void* self, const QuadChar& other, _fmxcpt& x);
bool FM_QuadChar_operatorGT(const void* self, const QuadChar& other, _fmxcpt& x);
bool FM_QuadChar_operatorGE(const void* self, const QuadChar& other, _fmxcpt& x);
uint32 FM_QuadChar_GetMacType(const void* self, _fmxcpt& x);
void FM_QuadChar_SetMacType(void* self, uint32 type, _fmxcpt& x);
void FM_QuadChar_Delete(void* self, _fmxcpt& x);

Locale* FM_Locale_Constructor1(int32 type, _fmxcpt& x);
Locale* FM_Locale_Constructor2(const Locale& other, _fmxcpt& x);
const Locale* FM_Locale_operatorAS(void* self, const Locale& other, _fmxcpt& x);
void FM_Locale_Delete(void* self, _fmxcpt& x);
}

/// A plug-in's identifier.
class QuadChar {
 public:
  const QuadChar& operator=(const QuadChar& other) {
    _fmxcpt x;
    const QuadChar* result = FM_QuadChar_operatorAS(this, other, x);
    x.Check();
    return *result;
  }
  uchar operator[](int index) const {
    _fmxcpt x;
    const uchar result = FM_QuadChar_operatorCAR(this, index, x);
    x.Check();
    return result;
  }
  bool operator==(const QuadChar& other) const { return Compare(FM_QuadChar_operatorEQ, other); }
  bool operator!=(const QuadChar& other) const { return Compare(FM_QuadChar_operatorNE, other); }
  bool operator<(const QuadChar& other) const { return Compare(FM_QuadChar_operatorLT, other); }
  bool operator<=(const QuadChar& other) const { return Compare(FM_QuadChar_operatorLE, other); }
  bool operator>(const QuadChar& other) const { return Compare(FM_QuadChar_operatorGT, other); }
  bool operator>=(const QuadChar& other) const { return Compare(FM_QuadChar_operatorGE, other); }

  void operator delete(void* self) {
    _fmxcpt x;
    FM_QuadChar_Delete(self, x);
  }

 private:
  QuadChar();
  QuadChar(const QuadChar&);

  bool Compare(bool (*call)(const void*, const QuadChar&, _fmxcpt&), const QuadChar& other) const {
    _fmxcpt x;
    const bool result = call(this, other, x);
    x.Check();
    return result;
  }
};

/// The language for formatting a value.
class Locale {
 public:
  enum Type { kType_None = 0, kType_System = 1 };

  const Locale& operator=(const Locale& other) {
    _fmxcpt x;
    const Locale* result = FM_Locale_operatorAS(this, other, x);
    x.Check();
    return *result;
  }

  void operator delete(void* self) {
    _fmxcpt x;
    FM_Locale_Delete(self, x);
  }

 private:
  Locale();
  Locale(const Locale&);
};

class QuadCharUniquePtr : public std::unique_ptr<QuadChar> {
 public:
  QuadCharUniquePtr() {
    _fmxcpt x;
    reset(FM_QuadChar_Constructor1(x));
    x.Check();
  }
  QuadCharUniquePtr(char c0, char c1, char c2, char c3) {
    _fmxcpt x;
    reset(FM_QuadChar_Constructor2(c0, c1, c2, c3, x));
    x.Check();
  }
};

class LocaleUniquePtr : public std::unique_ptr<Locale> {
 public:
  explicit LocaleUniquePtr(Locale::Type type) {
    _fmxcpt x;
    reset(FM_Locale_Constructor1(type, x));
    x.Check();
  }
};

}  // namespace fmx
