// Container data: streams of bytes, each named by four characters.
#pragma once

#include <FMWrapper/FMXClient.h>
#include <FMWrapper/FMXTypes.h>

namespace fmx {

class BinaryData;
class Text;

extern "C" {
BinaryData* FM_BinaryData_Constructor1(_fmxcpt& x);
BinaryData* FM_BinaryData_Constructor2(const BinaryData& other, _fmxcpt& x);
BinaryData* FM_BinaryData_Constructor3(const Text& name, uint32 size, void* bytes, _fmxcpt& x);
BinaryData* FM_BinaryData_Constructor4(const Text& name, uint32* context, _fmxcpt& x);
void FM_BinaryData_Delete(void* self, _fmxcpt& x);
BinaryData* FM_BinaryData_operatorAS(void* self, const BinaryData& other, _fmxcpt& x);
bool FM_BinaryData_operatorEQ(const void* self, const BinaryData& other, _fmxcpt& x);
bool FM_BinaryData_operatorNE(const void* self, const BinaryData& other, _fmxcpt& x);
int32 FM_BinaryData_GetCount(const void* self, _fmxcpt& x);
int32 FM_BinaryData_GetIndex(const void* self, const QuadChar& type, _fmxcpt& x);
void FM_BinaryData_GetType(const void* self, int32 index, QuadChar& type, _fmxcpt& x);
uint32 FM_BinaryData_GetSize(const void* self, int32 index, _fmxcpt& x);
uint32 FM_BinaryData_GetTotalSize(const void* self, _fmxcpt& x);
errcode FM_BinaryData_GetData(const void* self, int32 index, uint32 offset, uint32 size, void* buffer, _fmxcpt& x);
errcode FM_BinaryData_Add(void* self, const QuadChar& type, uint32 size, void* bytes, _fmxcpt& x);
errcode FM_BinaryData_AddBegin(void* self, const QuadChar& type, uint32* context, _fmxcpt& x);
errcode FM_BinaryData_AddAppend(void* self, uint32 context, uint32 size, void* bytes, _fmxcpt& x);
errcode FM_BinaryData_AddFinish(void* self, uint32 context, _fmxcpt& x);
bool FM_BinaryData_Remove(void* self, const QuadChar& type, _fmxcpt& x);
void FM_BinaryData_RemoveAll(void* self, _fmxcpt& x);
errcode FM_BinaryData_GetFNAMData(const void* self, Text& name, _fmxcpt& x);
errcode FM_BinaryData_AddFNAMData(void* self, const Text& name, _fmxcpt& x);
errcode FM_BinaryData_GetSIZEData(const void* self, short& width, short& height, _fmxcpt& x);
errcode FM_BinaryData_AddSIZEData(void* self, short width, short height, _fmxcpt& x);
}

/// The content of a container field.
class BinaryData {
 public:
  void operator delete(void* self) {
    _fmxcpt x;
    FM_BinaryData_Delete(self, x);
  }

 private:
  BinaryData();
  BinaryData(const BinaryData&);
};

}  // namespace fmx
