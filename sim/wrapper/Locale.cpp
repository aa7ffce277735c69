// Locales: the simulated host knows only their number.
#include "wrapper/Objects.h"

namespace {

using fmhost::HostCall;
using fmhost::Live;
using fmhost::LocaleObject;

fmx::Locale* MakeLocale(fmx::int32 type) {
  auto* object = fmhost::Make<LocaleObject>();
  object->type = type;
  return reinterpret_cast<fmx::Locale*>(object);
}

}  // namespace

namespace fmx {

FM_API Locale* FM_Locale_Constructor1(int32 type, _fmxcpt& x) {
  return HostCall(__func__, x, [&] { return MakeLocale(type); });
}

FM_API Locale* FM_Locale_Constructor2(const Locale& other, _fmxcpt& x) {
  return HostCall(__func__, x, [&] { return MakeLocale(Live<LocaleObject>(&other).type); });
}

FM_API const Locale* FM_Locale_operatorAS(void* self, const Locale& other, _fmxcpt& x) {
  return HostCall(__func__, x, [&] {
    Live<LocaleObject>(self).type = Live<LocaleObject>(&other).type;
    return static_cast<const Locale*>(self);
  });
}

FM_API void FM_Locale_Delete(void* self, _fmxcpt&) { fmhost::Delete<LocaleObject>(__func__, self); }

}  // namespace fmx
