// Argument lists, and the rows of queries.
#include "wrapper/Objects.h"

namespace wrapper {

void DataVectObject::PushBack(const DataObject& value) {
  auto copy = std::make_unique<Part<DataObject>>();
  (*copy)->Set(value.value, value.nativeType);
  *(*copy)->locale = *value.locale;
  *(*copy)->text = *value.text;
  values.push_back(std::move(copy));
}

namespace {

DataVectObject& ListAt(const void* self) { return Live<DataVectObject>(self); }
const fmx::Data* Element(const void* self, fmx::uint32 index) { return ListAt(self).values.at(index)->Show(); }
RowVectObject& RowsAt(const void* self) { return Live<RowVectObject>(self); }

}  // namespace
}  // namespace wrapper

namespace fmx {

using wrapper::DataVectObject;
using wrapper::Element;
using wrapper::HostCall;
using wrapper::ListAt;
using wrapper::RowsAt;
using wrapper::RowVectObject;

FM_API DataVect* FM_DataVect_Constructor1(_fmxcpt& x) {
  return HostCall(__func__, x, [&] { return wrapper::Make<DataVectObject>(); });
}

FM_API void FM_DataVect_Delete(void* self, _fmxcpt&) { wrapper::Delete<DataVectObject>(__func__, self); }

FM_API uint32 FM_DataVect_Size(const void* self, _fmxcpt& x) {
  return HostCall(__func__, x, [&] { return static_cast<uint32>(ListAt(self).values.size()); });
}

FM_API bool FM_DataVect_IsEmpty(const void* self, _fmxcpt& x) {
  return HostCall(__func__, x, [&] { return ListAt(self).values.empty(); });
}

FM_API void FM_DataVect_Clear(void* self, _fmxcpt& x) {
  HostCall(__func__, x, [&] { ListAt(self).values.clear(); });
}

FM_API void FM_DataVect_PushBack(void* self, const Data& value, _fmxcpt& x) {
  HostCall(__func__, x, [&] { ListAt(self).PushBack(wrapper::Live<wrapper::DataObject>(&value)); });
}

FM_API Data* FM_DataVect_PopBack(void* self, _fmxcpt& x) {
  return HostCall(__func__, x, [&]() -> Data* {
    auto& values = ListAt(self).values;
    if (values.empty()) return nullptr;
    auto* popped = wrapper::Make<wrapper::DataObject>();
    auto& data = wrapper::Live<wrapper::DataObject>(popped);
    auto& last = **values.back();
    data.Set(last.value, last.nativeType);
    *data.locale = *last.locale;
    *data.text = *last.text;
    values.pop_back();
    return popped;
  });
}

FM_API const Data* FM_DataVect_At(const void* self, uint32 index, _fmxcpt& x) {
  return HostCall(__func__, x, [&] { return Element(self, index); });
}

#define DATAVECT_FORM(name, Result, get)                                         \
  FM_API Result FM_DataVect_##name(const void* self, uint32 index, _fmxcpt& x) { \
    return HostCall(__func__, x, [&] { return get(Element(self, index), x); });  \
  }
DATAVECT_FORM(AtAsText, const Text*, FM_Data_GetAsText)
DATAVECT_FORM(AtAsNumber, const FixPt*, FM_Data_GetAsNumber)
DATAVECT_FORM(AtAsBoolean, bool, FM_Data_GetAsBoolean)
DATAVECT_FORM(AtAsDate, const DateTime*, FM_Data_GetAsDate)
DATAVECT_FORM(AtAsTime, const DateTime*, FM_Data_GetAsTime)
DATAVECT_FORM(AtAsTimeStamp, const DateTime*, FM_Data_GetAsTimeStamp)
DATAVECT_FORM(AtAsBinaryData, const BinaryData*, FM_Data_GetBinaryData)
#undef DATAVECT_FORM

FM_API RowVect* FM_RowVect_Constructor1(_fmxcpt& x) {
  return HostCall(__func__, x, [&] { return wrapper::Make<RowVectObject>(); });
}

FM_API void FM_RowVect_Delete(void* self, _fmxcpt&) { wrapper::Delete<RowVectObject>(__func__, self); }

FM_API uint32 FM_RowVect_Size(const void* self, _fmxcpt& x) {
  return HostCall(__func__, x, [&] { return static_cast<uint32>(RowsAt(self).rows.size()); });
}

FM_API bool FM_RowVect_IsEmpty(const void* self, _fmxcpt& x) {
  return HostCall(__func__, x, [&] { return RowsAt(self).rows.empty(); });
}

FM_API const DataVect* FM_RowVect_At(const void* self, uint32 index, _fmxcpt& x) {
  return HostCall(__func__, x, [&]() -> const DataVect* { return RowsAt(self).rows.at(index)->Show(); });
}

}  // namespace fmx
