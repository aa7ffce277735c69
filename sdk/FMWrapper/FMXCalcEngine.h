// Calculations: argument lists, evaluation, and the registration of external functions and script steps.
//
// Like the vendor's header, this one uses QuadChar without declaring it: include FMXTypes.h first.
#pragma once

#include <FMWrapper/FMXClient.h>

namespace fmx {

class BinaryData;
class Data;
class DataVect;
class DateTime;
class ExprEnv;
class FixPt;
class RowVect;
class Text;

/// An external function: 0 or a FileMaker error; the answer goes into `result`.
using ExtPluginType = errcode (*)(short functionId, const ExprEnv& env, const DataVect& args, Data& result);

extern "C" {
DataVect* FM_DataVect_Constructor1(_fmxcpt& x);
void FM_DataVect_Delete(void* self, _fmxcpt& x);
uint32 FM_DataVect_Size(const void* self, _fmxcpt& x);
bool FM_DataVect_IsEmpty(const void* self, _fmxcpt& x);
void FM_DataVect_Clear(void* self, _fmxcpt& x);
void FM_DataVect_PushBack(void* self, const Data& value, _fmxcpt& x);
Data* FM_DataVect_PopBack(void* self, _fmxcpt& x);
const Data* FM_DataVect_At(const void* self, uint32 index, _fmxcpt& x);
const Text* FM_DataVect_AtAsText(const void* self, uint32 index, _fmxcpt& x);
const FixPt* FM_DataVect_AtAsNumber(const void* self, uint32 index, _fmxcpt& x);
bool FM_DataVect_AtAsBoolean(const void* self, uint32 index, _fmxcpt& x);
const DateTime* FM_DataVect_AtAsDate(const void* self, uint32 index, _fmxcpt& x);
const DateTime* FM_DataVect_AtAsTime(const void* self, uint32 index, _fmxcpt& x);
const DateTime* FM_DataVect_AtAsTimeStamp(const void* self, uint32 index, _fmxcpt& x);
const BinaryData* FM_DataVect_AtAsBinaryData(const void* self, uint32 index, _fmxcpt& x);

RowVect* FM_RowVect_Constructor1(_fmxcpt& x);
void FM_RowVect_Delete(void* self, _fmxcpt& x);
uint32 FM_RowVect_Size(const void* self, _fmxcpt& x);
bool FM_RowVect_IsEmpty(const void* self, _fmxcpt& x);
const DataVect* FM_RowVect_At(const void* self, uint32 index, _fmxcpt& x);

ExprEnv* FM_ExprEnv_Constructor1(_fmxcpt& x);
void FM_ExprEnv_Delete(void* self, _fmxcpt& x);
errcode FM_ExprEnv_Evaluate(const void* self, const Text& expression, Data& result, _fmxcpt& x);
errcode FM_ExprEnv_EvaluateConvertFromFileMakerPath(const void* self, const Text& path, int32 format, Text& result,
                                                    _fmxcpt& x);
errcode FM_ExprEnv_EvaluateConvertToFileMakerPath(const void* self, const Text& path, int32 format, Text& result,
                                                  _fmxcpt& x);
errcode FM_ExprEnv_EvaluateGetFunction(const void* self, short function, Data& result, _fmxcpt& x);
errcode FM_ExprEnv_ExecuteFileSQL(const void* self, const Text& sql, const Text& file, const DataVect& parameters,
                                  RowVect& result, _fmxcpt& x);
errcode FM_ExprEnv_ExecuteFileSQLTextResult(const void* self, const Text& sql, const Text& file,
                                            const DataVect& parameters, Data& result, uint16 columnSeparator,
                                            uint16 rowSeparator, _fmxcpt& x);
errcode FM_ExprEnv_RegisterExternalFunctionEx(const QuadChar& plugin, short id, const Text& name, const Text& prototype,
                                              const Text& description, short minArguments, short maxArguments,
                                              uint32 flags, ExtPluginType function, _fmxcpt& x);
errcode FM_ExprEnv_RegisterExternalFunction(const QuadChar& plugin, short id, const Text& name, const Text& prototype,
                                            short minArguments, short maxArguments, uint32 flags,
                                            ExtPluginType function, _fmxcpt& x);
errcode FM_ExprEnv_UnRegisterExternalFunction(const QuadChar& plugin, short id, _fmxcpt& x);
errcode FM_ExprEnv_RegisterScriptStep(const QuadChar& plugin, short id, const Text& name, const Text& definition,
                                      const Text& description, uint32 flags, ExtPluginType step, _fmxcpt& x);
errcode FM_ExprEnv_UnRegisterScriptStep(const QuadChar& plugin, short id, _fmxcpt& x);
ptrtype FM_ExprEnv_SessionID(const void* self, _fmxcpt& x);
ptrtype FM_ExprEnv_FileID(const void* self, _fmxcpt& x);
}

/// The arguments of a call.
class DataVect {
 public:
  uint32 Size() const {
    _fmxcpt x;
    const uint32 result = FM_DataVect_Size(this, x);
    x.Check();
    return result;
  }
  void PushBack(const Data& value) {
    _fmxcpt x;
    FM_DataVect_PushBack(this, value, x);
    x.Check();
  }
  /// `index` counts from 0 and must be below Size().
  const Data& At(uint32 index) const {
    _fmxcpt x;
    const Data* result = FM_DataVect_At(this, index, x);
    x.Check();
    return *result;
  }
  const Text& AtAsText(uint32 index) const {
    _fmxcpt x;
    const Text* result = FM_DataVect_AtAsText(this, index, x);
    x.Check();
    return *result;
  }
  const FixPt& AtAsNumber(uint32 index) const {
    _fmxcpt x;
    const FixPt* result = FM_DataVect_AtAsNumber(this, index, x);
    x.Check();
    return *result;
  }

  void operator delete(void* self) {
    _fmxcpt x;
    FM_DataVect_Delete(self, x);
  }

 private:
  DataVect();
  DataVect(const DataVect&);
};

/// The rows of a query.
class RowVect {
 public:
  void operator delete(void* self) {
    _fmxcpt x;
    FM_RowVect_Delete(self, x);
  }

 private:
  RowVect();
  RowVect(const RowVect&);
};

/// A calculation context. One made by a plug-in sees no file until FMX_SetToCurrentEnv binds it.
class ExprEnv {
 public:
  enum {
    kMacCompatible = 0x00000002,
    kWinCompatible = 0x00000004,
    kServerCompatible = 0x00000008,
    kIOSCompatible = 0x00000010,
    kCustomWebCompatible = 0x00000020,
    kWebDirectCompatible = 0x00000040,
    kDisplayInAllDialogs = 0x0000FF00,
    kFutureCompatible = 0x00FF007E
  };

  /// 0 and the value, or a FileMaker error.
  errcode Evaluate(const Text& expression, Data& result) const {
    _fmxcpt x;
    const errcode error = FM_ExprEnv_Evaluate(this, expression, result, x);
    x.Check();
    return error;
  }

  /// Any number of arguments is -1 for the maximum.
  static errcode RegisterExternalFunctionEx(const QuadChar& plugin, short id, const Text& name, const Text& prototype,
                                            const Text& description, short minArguments, short maxArguments,
                                            uint32 flags, ExtPluginType function) {
    _fmxcpt x;
    const errcode error = FM_ExprEnv_RegisterExternalFunctionEx(plugin, id, name, prototype, description, minArguments,
                                                                maxArguments, flags, function, x);
    x.Check();
    return error;
  }
  static errcode RegisterExternalFunction(const QuadChar& plugin, short id, const Text& name, const Text& prototype,
                                          short minArguments, short maxArguments, uint32 flags,
                                          ExtPluginType function) {
    _fmxcpt x;
    const errcode error = FM_ExprEnv_RegisterExternalFunction(plugin, id, name, prototype, minArguments, maxArguments,
                                                              flags, function, x);
    x.Check();
    return error;
  }
  static errcode UnRegisterExternalFunction(const QuadChar& plugin, short id) {
    _fmxcpt x;
    const errcode error = FM_ExprEnv_UnRegisterExternalFunction(plugin, id, x);
    x.Check();
    return error;
  }

  void operator delete(void* self) {
    _fmxcpt x;
    FM_ExprEnv_Delete(self, x);
  }

 private:
  ExprEnv();
  ExprEnv(const ExprEnv&);
};

class DataVectUniquePtr : public std::unique_ptr<DataVect> {
 public:
  DataVectUniquePtr() {
    _fmxcpt x;
    reset(FM_DataVect_Constructor1(x));
    x.Check();
  }
};

class ExprEnvUniquePtr : public std::unique_ptr<ExprEnv> {
 public:
  ExprEnvUniquePtr() {
    _fmxcpt x;
    reset(FM_ExprEnv_Constructor1(x));
    x.Check();
  }
};

}  // namespace fmx
