// What stands behind the opaque host objects, and the frame of every C function.
#pragma once

#include <FMWrapper/FMXTypes.h>

#include <FMWrapper/FMXCalcEngine.h>
#include <FMWrapper/FMXData.h>
#include <FMWrapper/FMXFixPt.h>
#include <FMWrapper/FMXText.h>

#include <array>
#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "calc/Value.h"
#include "wrapper/Ledger.h"

#define FM_API extern "C" __attribute__((visibility("default")))

namespace fmhost {

class Host;
/// nullptr when there is none.
Host* CurrentHost();

struct QuadCharObject {
  static constexpr char kKind[] = "QuadChar";
  std::array<fmx::uchar, 4> bytes{};
};

struct LocaleObject {
  static constexpr char kKind[] = "Locale";
  fmx::int32 type = fmx::Locale::kSystem;
};

struct TextObject {
  static constexpr char kKind[] = "Text";
  std::u16string units;
};

struct FixPtObject {
  static constexpr char kKind[] = "FixPt";
  calc::Number number;
};

struct DataObject {
  static constexpr char kKind[] = "Data";

  DataObject();
  ~DataObject();
  DataObject(const DataObject&) = delete;
  DataObject& operator=(const DataObject&) = delete;

  void Set(calc::Value newValue, fmx::int32 newType);

  calc::Value value;
  fmx::int32 nativeType = fmx::Data::kDTInvalid;
  // Handed out by address and owned by the value.
  LocaleObject locale;
  mutable TextObject text;
  mutable FixPtObject number;
};

struct DataVectObject {
  static constexpr char kKind[] = "DataVect";

  void PushBack(const DataObject& value);
  void PopBack();
  ~DataVectObject();

  std::vector<std::unique_ptr<DataObject>> values;
};

struct ExprEnvObject {
  static constexpr char kKind[] = "ExprEnv";
  std::uint64_t file = 0;
};

/// The object at `self`; a dead or foreign one is noted as the current plug-in's mistake and raised.
template <class Object>
Object& Live(const void* self) {
  if (!Ledger::Instance().IsLive(self, Object::kKind)) {
    Ledger::Instance().NoteMisuse(Object::kKind);
    throw std::invalid_argument(Object::kKind);
  }
  return *static_cast<Object*>(const_cast<void*>(self));
}

template <class Object>
Object* Make() {
  auto object = std::make_unique<Object>();
  Ledger::Instance().Add(object.get(), Object::kKind);
  return object.release();
}

/// The body of the C function `function`. A deletion cannot fail.
template <class Object>
void Delete(const char* function, void* self) {
  Ledger::Instance().EnterCall(function);
  if (self != nullptr && Ledger::Instance().Remove(self, Object::kKind)) delete static_cast<Object*>(self);
}

/// Runs the body of the C function `function`; what it throws becomes the exception status.
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
    x.m_code = fmx::_fmxcpt::kOther;
  }
  return Result();
}

}  // namespace fmhost
