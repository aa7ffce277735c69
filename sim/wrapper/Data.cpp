// Host values.
#include <utility>

#include "wrapper/Host.h"
#include "wrapper/Objects.h"

namespace fmhost {

DataObject::DataObject() {
  auto& ledger = Ledger::Instance();
  ledger.AddPart(&locale, LocaleObject::kKind);
  ledger.AddPart(&text, TextObject::kKind);
  ledger.AddPart(&number, FixPtObject::kKind);
}

DataObject::~DataObject() {
  auto& ledger = Ledger::Instance();
  ledger.RemovePart(&locale);
  ledger.RemovePart(&text);
  ledger.RemovePart(&number);
}

void DataObject::Set(calc::Value newValue, fmx::int32 newType) {
  value = std::move(newValue);
  nativeType = newType;
}

calc::Value ValueOf(const fmx::Data& data) { return Live<DataObject>(&data).value; }

void SetValue(fmx::Data& data, const calc::Value& value) {
  Live<DataObject>(&data).Set(value, static_cast<fmx::int32>(value.type()));
}

namespace {

DataObject& DataAt(const void* self) { return Live<DataObject>(self); }

calc::Value Converted(const calc::Value& value, fmx::int32 type) {
  switch (type) {
    case fmx::Data::kDTNumber:
      return calc::Value::OfNumber(value.AsNumber());
    case fmx::Data::kDTDate:
    case fmx::Data::kDTTime:
    case fmx::Data::kDTTimeStamp:
      return calc::Value::OfMoment(static_cast<calc::Type>(type), value.AsNumber());
    case fmx::Data::kDTBoolean:
      return calc::Value::OfBoolean(value.AsBoolean());
    default:
      return calc::Value::OfText(value.AsText());
  }
}

}  // namespace
}  // namespace fmhost

namespace fmx {

using fmhost::DataAt;
using fmhost::DataObject;
using fmhost::HostCall;
using fmhost::Live;

FM_API Data* FM_Data_Constructor1(_fmxcpt& x) {
  return HostCall(__func__, x, [&] { return reinterpret_cast<Data*>(fmhost::Make<DataObject>()); });
}

FM_API void FM_Data_Delete(void* self, _fmxcpt&) { fmhost::Delete<DataObject>(__func__, self); }

FM_API bool FM_Data_IsEmpty(const void* self, _fmxcpt& x) {
  return HostCall(__func__, x, [&] { return DataAt(self).value.IsEmpty(); });
}

FM_API bool FM_Data_IsValid(const void* self, _fmxcpt& x) {
  return HostCall(__func__, x, [&] { return DataAt(self).value.error() == 0; });
}

FM_API bool FM_Data_IsFindRequest(const void* self, _fmxcpt& x) {
  return HostCall(__func__, x, [&] { return DataAt(self), false; });
}

FM_API void FM_Data_Clear(void* self, int32 type, _fmxcpt& x) {
  HostCall(__func__, x, [&] { DataAt(self).Set({}, type); });
}

FM_API int32 FM_Data_GetNativeType(const void* self, _fmxcpt& x) {
  return HostCall(__func__, x, [&] { return DataAt(self).nativeType; });
}

FM_API void FM_Data_ConvertData(void* self, int32 type, _fmxcpt& x) {
  HostCall(__func__, x, [&] { DataAt(self).Set(fmhost::Converted(DataAt(self).value, type), type); });
}

FM_API const Text* FM_Data_GetAsText(const void* self, _fmxcpt& x) {
  return HostCall(__func__, x, [&] {
    auto& data = DataAt(self);
    data.text.units = data.value.AsText();
    return reinterpret_cast<const Text*>(&data.text);
  });
}

FM_API const FixPt* FM_Data_GetAsNumber(const void* self, _fmxcpt& x) {
  return HostCall(__func__, x, [&] {
    auto& data = DataAt(self);
    data.number.number = data.value.AsNumber();
    return reinterpret_cast<const FixPt*>(&data.number);
  });
}

FM_API bool FM_Data_GetAsBoolean(const void* self, _fmxcpt& x) {
  return HostCall(__func__, x, [&] { return DataAt(self).value.AsBoolean(); });
}

FM_API const Locale* FM_Data_GetLocale(const void* self, _fmxcpt& x) {
  return HostCall(__func__, x, [&] { return reinterpret_cast<const Locale*>(&DataAt(self).locale); });
}

FM_API errcode FM_Data_SetAsText(void* self, const Text& text, const Locale& locale, int32 type, _fmxcpt& x) {
  return HostCall(__func__, x, [&] {
    auto& data = DataAt(self);
    data.locale.type = Live<fmhost::LocaleObject>(&locale).type;
    data.Set(calc::Value::OfText(Live<fmhost::TextObject>(&text).units), type);
    return errcode{0};
  });
}

FM_API void FM_Data_SetAsNumber(void* self, const FixPt& number, int32 type, _fmxcpt& x) {
  HostCall(__func__, x,
           [&] { DataAt(self).Set(calc::Value::OfNumber(Live<fmhost::FixPtObject>(&number).number), type); });
}

}  // namespace fmx
