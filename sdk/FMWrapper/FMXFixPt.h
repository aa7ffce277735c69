// Host numbers.
#pragma once

#include <FMWrapper/FMXClient.h>

namespace fmx {

class FixPt;

extern "C" {
FixPt* FM_FixPt_Constructor1(int32 value, int precision, _fmxcpt& x);
FixPt* FM_FixPt_Constructor2(int32 value, const FixPt& precisionOf, _fmxcpt& x);
void FM_FixPt_AssignInt(void* self, int32 value, _fmxcpt& x);
void FM_FixPt_AssignInt64(void* self, int64 value, _fmxcpt& x);
void FM_FixPt_AssignDouble(void* self, double value, _fmxcpt& x);
int32 FM_FixPt_AsLong(const void* self, _fmxcpt& x);
int64 FM_FixPt_AsLong64(const void* self, _fmxcpt& x);
double FM_FixPt_AsFloat(const void* self, _fmxcpt& x);
bool FM_FixPt_AsBool(const void* self, _fmxcpt& x);
void FM_FixPt_Delete(void* self, _fmxcpt& x);
void FM_FixPt_AssignFixPt(void* self, const FixPt& other, _fmxcpt& x);
int FM_FixPt_GetPrecision(const void* self, _fmxcpt& x);
void FM_FixPt_SetPrecision(void* self, int precision, _fmxcpt& x);
void FM_FixPt_Negate(void* self, _fmxcpt& x);
void FM_FixPt_Increment(void* self, int32 by, _fmxcpt& x);
void FM_FixPt_Increment64(void* self, int64 by, _fmxcpt& x);
void FM_FixPt_Decrement(void* self, int32 by, _fmxcpt& x);
void FM_FixPt_Decrement64(void* self, int64 by, _fmxcpt& x);
void FM_FixPt_Add(const void* self, const FixPt& other, FixPt& result, _fmxcpt& x);
void FM_FixPt_Subtract(const void* self, const FixPt& other, FixPt& result, _fmxcpt& x);
void FM_FixPt_Multiply(const void* self, const FixPt& other, FixPt& result, _fmxcpt& x);
errcode FM_FixPt_Divide(const void* self, const FixPt& divisor, FixPt& result, _fmxcpt& x);
bool FM_FixPt_operatorEQ(const void* self, const FixPt& other, _fmxcpt& x);
bool FM_FixPt_operatorNE(const void* self, const FixPt& other, _fmxcpt& x);
bool FM_FixPt_operatorLT(const void* self, const FixPt& other, _fmxcpt& x);
bool FM_FixPt_operatorLE(const void* self, const FixPt& other, _fmxcpt& x);
bool FM_FixPt_operatorGT(const void* self, const FixPt& other, _fmxcpt& x);
bool FM_FixPt_operatorGE(const void* self, const FixPt& other, _fmxcpt& x);
}

class FixPt {
 public:
  void AssignInt64(int64 value) {
    _fmxcpt x;
    FM_FixPt_AssignInt64(this, value, x);
    x.Check();
  }
  void AssignDouble(double value) {
    _fmxcpt x;
    FM_FixPt_AssignDouble(this, value, x);
    x.Check();
  }
  int64 AsLong64() const {
    _fmxcpt x;
    const int64 result = FM_FixPt_AsLong64(this, x);
    x.Check();
    return result;
  }
  double AsFloat() const {
    _fmxcpt x;
    const double result = FM_FixPt_AsFloat(this, x);
    x.Check();
    return result;
  }
  bool AsBool() const {
    _fmxcpt x;
    const bool result = FM_FixPt_AsBool(this, x);
    x.Check();
    return result;
  }

  void operator delete(void* self) {
    _fmxcpt x;
    FM_FixPt_Delete(self, x);
  }

 private:
  FixPt();
  FixPt(const FixPt&);
};

class FixPtUniquePtr : public std::unique_ptr<FixPt> {
 public:
  explicit FixPtUniquePtr(int32 value = 0, int precision = 16) {
    _fmxcpt x;
    reset(FM_FixPt_Constructor1(value, precision, x));
    x.Check();
  }
};

}  // namespace fmx
