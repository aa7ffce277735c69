// Locales; the simulated host keeps only their number.
#include "wrapper/Objects.h"

namespace fmx {

using wrapper::HostCall;
using wrapper::Live;
using wrapper::LocaleObject;

FM_API Locale* FM_Locale_Constructor1(int32 type, _fmxcpt& x) {
  return HostCall(__func__, x, [&] { return wrapper::Make<LocaleObject>(type); });
}

FM_API Locale* FM_Locale_Constructor2(const Locale& other, _fmxcpt& x) {
  return HostCall(__func__, x, [&] { return wrapper::Make<LocaleObject>(Live<LocaleObject>(&other)); });
}

FM_API const Locale* FM_Locale_operatorAS(void* self, const Locale& other, _fmxcpt& x) {
  return HostCall(__func__, x, [&] {
    Live<LocaleObject>(self) = Live<LocaleObject>(&other);
    return static_cast<const Locale*>(self);
  });
}

FM_API void FM_Locale_Delete(void* self, _fmxcpt&) { wrapper::Delete<LocaleObject>(__func__, self); }

}  // namespace fmx
