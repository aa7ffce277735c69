// Host values.
#include <optional>
#include <utility>

#include "calc/Moments.h"
#include "calc/Unicode.h"
#include "wrapper/Host.h"
#include "wrapper/Objects.h"

namespace wrapper {

void DataObject::Set(calc::Value newValue, fmx::int32 newType) {
  value = std::move(newValue);
  nativeType = newType;
}

calc::Value ValueOf(const fmx::Data& data) { return Live<DataObject>(&data).value; }

void SetValue(fmx::Data& data, const calc::Value& value) {
  Live<DataObject>(&data).Set(value, static_cast<fmx::int32>(value.type()));
}

namespace {

using Streams = std::vector<Stream>;
using ReadMoment = std::optional<calc::Number> (*)(const calc::Value& value);

DataObject& DataAt(const void* self) { return Live<DataObject>(self); }

calc::Value Moment(fmx::int32 type, ReadMoment read, const calc::Value& value) {
  if (value.IsEmpty()) return value;
  const auto serial = read(value);
  return serial ? calc::Value::OfMoment(static_cast<calc::Type>(type), *serial) : calc::Value::OfError(0);
}

calc::Value Converted(const calc::Value& value, fmx::int32 type) {
  switch (type) {
    case fmx::Data::kDTInvalid:
      return calc::Value::OfError(0);
    case fmx::Data::kDTNumber:
      return calc::Value::OfNumber(value.AsNumber());
    case fmx::Data::kDTDate:
      return Moment(type, calc::DateIn, value);
    case fmx::Data::kDTTime:
      return Moment(type, calc::TimeIn, value);
    case fmx::Data::kDTTimeStamp:
      return Moment(type, calc::TimestampIn, value);
    case fmx::Data::kDTBoolean:
      return calc::Value::OfBoolean(value.AsBoolean());
    case fmx::Data::kDTBinary:
      return value.container() != nullptr ? value : calc::Value::OfContainer({}, nullptr);
    default:
      return calc::Value::OfText(value.AsText());
  }
}

void SetConverted(void* self, const calc::Value& value, fmx::int32 type) {
  DataAt(self).Set(Converted(value, type), type);
}

calc::Value ValueOfPart(const fmx::DateTime& moment, fmx::int32 part) {
  const auto& parts = Live<DateTimeObject>(&moment);
  switch (part) {
    case fmx::Data::kDTDate:
      return calc::Value::OfMoment(calc::Type::kDate, parts.day);
    case fmx::Data::kDTTime:
      return calc::Value::OfMoment(calc::Type::kTime, parts.seconds);
    default:
      return calc::Value::OfMoment(calc::Type::kTimestamp, parts.SecondsSinceEpoch());
  }
}

// A value that is not a date, time or timestamp yields midnight of the first day.
const fmx::DateTime* ShowMoment(const void* self, Part<DateTimeObject> DataObject::*form, ReadMoment read,
                                void (*set)(DateTimeObject& moment, const calc::Number& serial)) {
  auto& data = DataAt(self);
  auto& shown = data.*form;
  *shown = {};
  if (const auto serial = read(data.value)) set(*shown, *serial);
  return shown.Show();
}

// The name of the file in a container.
std::u16string FileName(const Streams& streams) {
  for (const auto& [type, bytes] : streams) {
    if (std::string(type.begin(), type.end()) == "FNAM") return calc::ToUtf16(bytes.substr(bytes.find(':') + 1));
  }
  return {};
}

}  // namespace
}  // namespace wrapper

namespace fmx {

using wrapper::DataAt;
using wrapper::DataObject;
using wrapper::HostCall;
using wrapper::Live;
using wrapper::SetConverted;
using wrapper::Streams;

FM_API Data* FM_Data_Constructor1(_fmxcpt& x) {
  return HostCall(__func__, x, [&] { return wrapper::Make<DataObject>(); });
}

FM_API void FM_Data_Delete(void* self, _fmxcpt&) { wrapper::Delete<DataObject>(__func__, self); }

FM_API bool FM_Data_IsEmpty(const void* self, _fmxcpt& x) {
  return HostCall(__func__, x, [&] { return DataAt(self).value.IsEmpty(); });
}

FM_API bool FM_Data_IsValid(const void* self, _fmxcpt& x) {
  return HostCall(__func__, x, [&] { return !DataAt(self).value.IsError(); });
}

FM_API bool FM_Data_IsFindRequest(const void* self, _fmxcpt& x) {
  return HostCall(__func__, x, [&] {
    DataAt(self);
    return false;
  });
}

FM_API void FM_Data_Clear(void* self, int32 type, _fmxcpt& x) {
  HostCall(__func__, x, [&] { DataAt(self).Set({}, type); });
}

FM_API int32 FM_Data_GetNativeType(const void* self, _fmxcpt& x) {
  return HostCall(__func__, x, [&] { return DataAt(self).nativeType; });
}

FM_API void FM_Data_ConvertData(void* self, int32 type, _fmxcpt& x) {
  HostCall(__func__, x, [&] { SetConverted(self, DataAt(self).value, type); });
}

FM_API const Text* FM_Data_GetAsText(const void* self, _fmxcpt& x) {
  return HostCall(__func__, x, [&] {
    auto& data = DataAt(self);
    // Text stored by SetAsText still has its styles.
    if (data.text->units != data.value.AsText()) data.text->Assign(data.value.AsText());
    return data.text.Show();
  });
}

FM_API const FixPt* FM_Data_GetAsNumber(const void* self, _fmxcpt& x) {
  return HostCall(__func__, x, [&] {
    auto& data = DataAt(self);
    data.number->number = data.value.AsNumber();
    return data.number.Show();
  });
}

FM_API bool FM_Data_GetAsBoolean(const void* self, _fmxcpt& x) {
  return HostCall(__func__, x, [&] { return DataAt(self).value.AsBoolean(); });
}

FM_API const DateTime* FM_Data_GetAsDate(const void* self, _fmxcpt& x) {
  return HostCall(__func__, x, [&] {
    return wrapper::ShowMoment(self, &DataObject::date, calc::DateIn,
                               [](auto& moment, const auto& day) { moment.day = day.ToInteger(); });
  });
}

FM_API const DateTime* FM_Data_GetAsTime(const void* self, _fmxcpt& x) {
  return HostCall(__func__, x, [&] {
    return wrapper::ShowMoment(self, &DataObject::time, calc::TimeIn,
                               [](auto& moment, const auto& seconds) { moment.seconds = seconds; });
  });
}

FM_API const DateTime* FM_Data_GetAsTimeStamp(const void* self, _fmxcpt& x) {
  return HostCall(__func__, x, [&] {
    return wrapper::ShowMoment(self, &DataObject::timestamp, calc::TimestampIn,
                               [](auto& moment, const auto& seconds) { moment.SetSecondsSinceEpoch(seconds); });
  });
}

FM_API const BinaryData* FM_Data_GetBinaryData(const void* self, _fmxcpt& x) {
  return HostCall(__func__, x, [&] {
    auto& data = DataAt(self);
    const auto* streams = static_cast<const Streams*>(data.value.container().get());
    *data.content = {streams == nullptr ? Streams() : *streams, {}};
    return data.content.Show();
  });
}

FM_API const Locale* FM_Data_GetLocale(const void* self, _fmxcpt& x) {
  return HostCall(__func__, x, [&]() -> const Locale* { return DataAt(self).locale.Show(); });
}

FM_API errcode FM_Data_SetAsText(void* self, const Text& text, const Locale& locale, int32 type, _fmxcpt& x) {
  return HostCall(__func__, x, [&] {
    auto& data = DataAt(self);
    *data.locale = Live<wrapper::LocaleObject>(&locale);
    *data.text = Live<wrapper::TextObject>(&text);
    SetConverted(self, calc::Value::OfText(data.text->units), type);
    return errcode{0};
  });
}

FM_API void FM_Data_SetAsNumber(void* self, const FixPt& number, int32 type, _fmxcpt& x) {
  HostCall(__func__, x,
           [&] { SetConverted(self, calc::Value::OfNumber(Live<wrapper::FixPtObject>(&number).number), type); });
}

FM_API void FM_Data_SetAsDate(void* self, const DateTime& date, int32 type, _fmxcpt& x) {
  HostCall(__func__, x, [&] { SetConverted(self, wrapper::ValueOfPart(date, Data::kDTDate), type); });
}

FM_API void FM_Data_SetAsTime(void* self, const DateTime& time, int32 type, _fmxcpt& x) {
  HostCall(__func__, x, [&] { SetConverted(self, wrapper::ValueOfPart(time, Data::kDTTime), type); });
}

FM_API void FM_Data_SetAsTimeStamp(void* self, const DateTime& timestamp, int32 type, _fmxcpt& x) {
  HostCall(__func__, x, [&] { SetConverted(self, wrapper::ValueOfPart(timestamp, Data::kDTTimeStamp), type); });
}

FM_API void FM_Data_SetDateTime(void* self, const DateTime& moment, int32 part, int32 type, _fmxcpt& x) {
  HostCall(__func__, x, [&] { SetConverted(self, wrapper::ValueOfPart(moment, part), type); });
}

FM_API void FM_Data_SetBinaryData(void* self, const BinaryData& content, bool /*convert*/, _fmxcpt& x) {
  HostCall(__func__, x, [&] {
    const auto& streams = Live<wrapper::BinaryDataObject>(&content).streams;
    DataAt(self).Set(calc::Value::OfContainer(wrapper::FileName(streams), std::make_shared<const Streams>(streams)),
                     Data::kDTBinary);
  });
}

}  // namespace fmx
