// What every C function of the interface does, and the conversion between host objects and plug-in handles.
#pragma once

#include <FMWrapper/FMXClient.h>

#include <memory>
#include <new>
#include <stdexcept>
#include <utility>

#include "wrapper/Ledger.h"

#define FM_API extern "C" __attribute__((visibility("default")))

namespace wrapper {

/// The handle by which a plug-in refers to an object: its address.
template <class Object>
auto* HandleOf(Object* object) {
  return reinterpret_cast<typename Object::Handle*>(object);
}

/// An object that is part of another one: plug-ins may use it but not delete it.
template <class Object>
class Part {
 public:
  Part() = default;
  ~Part() {
    if (shown_) Ledger::Instance().RemovePart(&object_);
  }
  Part(const Part&) = delete;
  Part& operator=(const Part&) = delete;

  Object* operator->() { return &object_; }
  Object& operator*() { return object_; }

  /// Returns the object's handle.
  const auto* Show() {
    if (!shown_) Ledger::Instance().AddPart(&object_, Object::kKind);
    shown_ = true;
    return HandleOf(&object_);
  }

 private:
  Object object_;
  bool shown_ = false;
};

/// The object at `self`. A dead or foreign address is recorded as the current plug-in's mistake and throws. The C
/// functions take const pointers to what they read and, in cases such as FM_Text_Uppercase, to what they modify. This
/// is the only place that casts const away; no object is created const.
template <class Object>
Object& Live(const void* self) {
  if (!Ledger::Instance().IsLive(self, Object::kKind)) {
    Ledger::Instance().NoteMisuse(Object::kKind);
    throw std::invalid_argument(Object::kKind);
  }
  return *static_cast<Object*>(const_cast<void*>(self));
}

/// Creates an object for the current plug-in, which must delete it. `members` initialise it in order.
template <class Object, class... Members>
typename Object::Handle* Make(Members&&... members) {
  std::unique_ptr<Object> object(new Object{std::forward<Members>(members)...});
  Ledger::Instance().Add(object.get(), Object::kKind);
  return HandleOf(object.release());
}

/// The body of the C function `function`. A deletion cannot fail.
template <class Object>
void Delete(const char* function, void* self) {
  Ledger::Instance().EnterCall(function);
  if (self != nullptr && Ledger::Instance().Remove(self, Object::kKind)) delete static_cast<Object*>(self);
}

/// Runs the body of the C function `function` and converts an exception to the exception status.
template <class Body>
auto HostCall(const char* function, fmx::_fmxcpt& x, Body body) -> decltype(body()) {
  using Result = decltype(body());
  try {
    Ledger::Instance().EnterCall(function);
    Ledger::Instance().RaiseInjected();
    return body();
  } catch (const std::bad_alloc&) {
    x.m_code = fmx::_fmxcpt::kBadAlloc;
  } catch (const std::exception&) {
    x.m_code = fmx::_fmxcpt::kUnknown;
  }
  return Result();
}

}  // namespace wrapper

/// The functions that compare two objects of one class. For use in namespace fmx.
#define FM_COMPARISON(family, handle, name, op)                                                              \
  FM_API bool FM_##family##_operator##name(const void* self, const handle& other, _fmxcpt& x) {              \
    return wrapper::HostCall(__func__, x, [&] {                                                              \
      return wrapper::Live<wrapper::family##Object>(self) op wrapper::Live<wrapper::family##Object>(&other); \
    });                                                                                                      \
  }
#define FM_EQUALITY(family, handle)     \
  FM_COMPARISON(family, handle, EQ, ==) \
  FM_COMPARISON(family, handle, NE, !=)
#define FM_ORDER(family, handle)        \
  FM_EQUALITY(family, handle)           \
  FM_COMPARISON(family, handle, LT, <)  \
  FM_COMPARISON(family, handle, LE, <=) \
  FM_COMPARISON(family, handle, GT, >)  \
  FM_COMPARISON(family, handle, GE, >=)
