// Host numbers.
#include <algorithm>
#include <limits>

#include "calc/Errors.h"
#include "wrapper/Objects.h"

namespace {

wrapper::FixPtObject& ObjectAt(const void* self) { return wrapper::Live<wrapper::FixPtObject>(self); }
calc::Number& NumberAt(const void* self) { return ObjectAt(self).number; }

}  // namespace

namespace fmx {

using wrapper::FixPtObject;
using wrapper::HostCall;

FM_API FixPt* FM_FixPt_Constructor1(int32 value, int precision, _fmxcpt& x) {
  return HostCall(__func__, x, [&] { return wrapper::Make<FixPtObject>(value, precision); });
}

FM_API FixPt* FM_FixPt_Constructor2(int32 value, const FixPt& precisionOf, _fmxcpt& x) {
  return HostCall(__func__, x, [&] { return wrapper::Make<FixPtObject>(value, ObjectAt(&precisionOf).precision); });
}

FM_API void FM_FixPt_Delete(void* self, _fmxcpt&) { wrapper::Delete<FixPtObject>(__func__, self); }

FM_API void FM_FixPt_AssignInt(void* self, int32 value, _fmxcpt& x) {
  HostCall(__func__, x, [&] { NumberAt(self) = value; });
}

FM_API void FM_FixPt_AssignInt64(void* self, int64 value, _fmxcpt& x) {
  HostCall(__func__, x, [&] { NumberAt(self) = value; });
}

FM_API void FM_FixPt_AssignDouble(void* self, double value, _fmxcpt& x) {
  HostCall(__func__, x, [&] { NumberAt(self) = calc::Number::FromDouble(value); });
}

FM_API void FM_FixPt_AssignFixPt(void* self, const FixPt& other, _fmxcpt& x) {
  HostCall(__func__, x, [&] { NumberAt(self) = NumberAt(&other); });
}

FM_API int32 FM_FixPt_AsLong(const void* self, _fmxcpt& x) {
  return HostCall(__func__, x, [&] {
    using Limits = std::numeric_limits<int32>;
    return static_cast<int32>(std::clamp<long long>(NumberAt(self).ToInteger(), Limits::min(), Limits::max()));
  });
}

FM_API int64 FM_FixPt_AsLong64(const void* self, _fmxcpt& x) {
  return HostCall(__func__, x, [&] { return static_cast<int64>(NumberAt(self).ToInteger()); });
}

FM_API double FM_FixPt_AsFloat(const void* self, _fmxcpt& x) {
  return HostCall(__func__, x, [&] { return NumberAt(self).ToDouble(); });
}

FM_API bool FM_FixPt_AsBool(const void* self, _fmxcpt& x) {
  return HostCall(__func__, x, [&] { return NumberAt(self).Sign() != 0; });
}

FM_API int FM_FixPt_GetPrecision(const void* self, _fmxcpt& x) {
  return HostCall(__func__, x, [&] { return ObjectAt(self).precision; });
}

FM_API void FM_FixPt_SetPrecision(void* self, int precision, _fmxcpt& x) {
  HostCall(__func__, x, [&] { ObjectAt(self).precision = precision; });
}

FM_API void FM_FixPt_Negate(void* self, _fmxcpt& x) {
  HostCall(__func__, x, [&] { NumberAt(self) = -NumberAt(self); });
}

#define FIXPT_STEP(name, Integer, op)                                                    \
  FM_API void FM_FixPt_##name(void* self, Integer by, _fmxcpt& x) {                      \
    HostCall(__func__, x, [&] { NumberAt(self) = NumberAt(self) op calc::Number(by); }); \
  }
FIXPT_STEP(Increment, int32, +)
FIXPT_STEP(Increment64, int64, +)
FIXPT_STEP(Decrement, int32, -)
FIXPT_STEP(Decrement64, int64, -)
#undef FIXPT_STEP

#define FIXPT_OPERATION(name, op)                                                                \
  FM_API void FM_FixPt_##name(const void* self, const FixPt& other, FixPt& result, _fmxcpt& x) { \
    HostCall(__func__, x, [&] { NumberAt(&result) = NumberAt(self) op NumberAt(&other); });      \
  }
FIXPT_OPERATION(Add, +)
FIXPT_OPERATION(Subtract, -)
FIXPT_OPERATION(Multiply, *)
#undef FIXPT_OPERATION

FM_API errcode FM_FixPt_Divide(const void* self, const FixPt& divisor, FixPt& result, _fmxcpt& x) {
  return HostCall(__func__, x, [&]() -> errcode {
    const auto quotient = NumberAt(self).DividedBy(NumberAt(&divisor), ObjectAt(self).precision);
    if (!quotient) return calc::errors::kDivisionByZero;
    NumberAt(&result) = *quotient;
    return 0;
  });
}

FM_ORDER(FixPt, FixPt)

}  // namespace fmx
