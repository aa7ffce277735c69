// Argument lists.
#include "wrapper/Objects.h"

namespace fmhost {

// The elements belong to the list: plug-ins may read but not delete them.
void DataVectObject::PushBack(const DataObject& value) {
  auto copy = std::make_unique<DataObject>();
  copy->Set(value.value, value.nativeType);
  copy->locale.type = value.locale.type;
  Ledger::Instance().AddPart(copy.get(), DataObject::kKind);
  values.push_back(std::move(copy));
}

void DataVectObject::PopBack() {
  Ledger::Instance().RemovePart(values.back().get());
  values.pop_back();
}

DataVectObject::~DataVectObject() {
  while (!values.empty()) PopBack();
}

namespace {

DataVectObject& ListAt(const void* self) { return Live<DataVectObject>(self); }
DataObject* Element(const void* self, fmx::uint32 index) { return ListAt(self).values.at(index).get(); }

}  // namespace
}  // namespace fmhost

namespace fmx {

using fmhost::Element;
using fmhost::HostCall;
using fmhost::ListAt;

FM_API DataVect* FM_DataVect_Constructor1(_fmxcpt& x) {
  return HostCall(__func__, x, [&] { return reinterpret_cast<DataVect*>(fmhost::Make<fmhost::DataVectObject>()); });
}

FM_API void FM_DataVect_Delete(void* self, _fmxcpt&) { fmhost::Delete<fmhost::DataVectObject>(__func__, self); }

FM_API uint32 FM_DataVect_Size(const void* self, _fmxcpt& x) {
  return HostCall(__func__, x, [&] { return static_cast<uint32>(ListAt(self).values.size()); });
}

FM_API bool FM_DataVect_IsEmpty(const void* self, _fmxcpt& x) {
  return HostCall(__func__, x, [&] { return ListAt(self).values.empty(); });
}

FM_API void FM_DataVect_Clear(void* self, _fmxcpt& x) {
  HostCall(__func__, x, [&] {
    while (!ListAt(self).values.empty()) ListAt(self).PopBack();
  });
}

FM_API void FM_DataVect_PushBack(void* self, const Data& value, _fmxcpt& x) {
  HostCall(__func__, x, [&] { ListAt(self).PushBack(fmhost::Live<fmhost::DataObject>(&value)); });
}

FM_API void FM_DataVect_PopBack(void* self, _fmxcpt& x) {
  HostCall(__func__, x, [&] {
    if (!ListAt(self).values.empty()) ListAt(self).PopBack();
  });
}

FM_API const Data* FM_DataVect_At(const void* self, uint32 index, _fmxcpt& x) {
  return HostCall(__func__, x, [&] { return reinterpret_cast<const Data*>(Element(self, index)); });
}

FM_API const Text* FM_DataVect_AtAsText(const void* self, uint32 index, _fmxcpt& x) {
  return HostCall(__func__, x, [&] { return FM_Data_GetAsText(Element(self, index), x); });
}

FM_API const FixPt* FM_DataVect_AtAsNumber(const void* self, uint32 index, _fmxcpt& x) {
  return HostCall(__func__, x, [&] { return FM_Data_GetAsNumber(Element(self, index), x); });
}

FM_API bool FM_DataVect_AtAsBoolean(const void* self, uint32 index, _fmxcpt& x) {
  return HostCall(__func__, x, [&] { return FM_Data_GetAsBoolean(Element(self, index), x); });
}

}  // namespace fmx
