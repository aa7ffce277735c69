// Host numbers, for plug-ins that calculate.
#include "wrapper/Objects.h"

namespace {

using fmhost::FixPtObject;
using fmhost::HostCall;
using fmhost::Live;

calc::Number& NumberAt(const void* self) { return Live<FixPtObject>(self).number; }

}  // namespace

namespace fmx {

FM_API FixPt* FM_FixPt_Constructor1(int32 value, int /*precision: numbers here are always exact*/, _fmxcpt& x) {
  return HostCall(__func__, x, [&] {
    auto* object = fmhost::Make<FixPtObject>();
    object->number = value;
    return reinterpret_cast<FixPt*>(object);
  });
}

FM_API void FM_FixPt_AssignInt(void* self, int32 value, _fmxcpt& x) {
  HostCall(__func__, x, [&] { NumberAt(self) = value; });
}

FM_API void FM_FixPt_AssignInt64(void* self, int64 value, _fmxcpt& x) {
  HostCall(__func__, x, [&] { NumberAt(self) = value; });
}

FM_API void FM_FixPt_AssignDouble(void* self, double value, _fmxcpt& x) {
  HostCall(__func__, x, [&] { NumberAt(self) = calc::Number::FromDouble(value); });
}

FM_API int32 FM_FixPt_AsLong(const void* self, _fmxcpt& x) {
  return HostCall(__func__, x, [&] { return static_cast<int32>(NumberAt(self).ToInteger()); });
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

FM_API void FM_FixPt_Delete(void* self, _fmxcpt&) { fmhost::Delete<FixPtObject>(__func__, self); }

}  // namespace fmx
