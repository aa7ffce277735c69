// The host's plug-in interface: basic types, the call record, messages, callbacks and the entry point.
#pragma once

#include <cstddef>
#include <memory>

namespace fmx {

using uint16 = unsigned short;
using int16 = short;
using uchar = unsigned char;
using int32 = int;
using uint32 = unsigned int;
using int64 = long;
using uint64 = unsigned long;
using ptrtype = uint64;
using unusedid = int32;
using errcode = short;
using unichar16 = unsigned short;

class Text;
class Data;
class ExprEnv;

}  // namespace fmx

using FMX_Text = fmx::Text;
using FMX_Data = fmx::Data;
using FMX_ExprEnv = fmx::ExprEnv;
using FMX_UChar = fmx::uchar;
using FMX_Int16 = fmx::int16;
using FMX_UInt16 = fmx::uint16;
using FMX_Int32 = fmx::int32;
using FMX_UInt32 = fmx::uint32;
using FMX_Unichar = fmx::unichar16;
using FMX_ErrorCode = fmx::errcode;
using FMX_PtrType = fmx::ptrtype;
using FMX_Boolean = char;

using FMX_ExternCallSwitch = FMX_UChar;
enum {
  kFMXT_Init = 0,
  kFMXT_Idle = 1,
  kFMXT_Shutdown = 4,
  kFMXT_DoAppPreferences = 5,
  kFMXT_GetString = 7,
  kFMXT_SessionShutdown = 8,
  kFMXT_FileShutdown = 9
};

using FMX_Application = FMX_UChar;

/// A plug-in's answer to kFMXT_Init when the host must not use it.
enum { kDoNotEnable = -2 };

/// parm1 of kFMXT_Idle; the plug-in may call the host's scripts only below kFMXT_ScriptPaused.
enum { kFMXT_UserIdle = 0, kFMXT_UserNotIdle = 1, kFMXT_ScriptPaused = 2, kFMXT_ScriptRunning = 3, kFMXT_Unsafe = 4 };

/// parm1 of kFMXT_GetString.
enum { kFMXT_NameStr = 128, kFMXT_AppConfigStr = 129, kFMXT_OptionsStr = 131, kFMXT_HelpURLStr = 132 };

using FMX_ScriptControl = FMX_UChar;
enum { kFMXT_Halt = 0, kFMXT_Exit = 1, kFMXT_Resume = 2, kFMXT_Pause = 3 };

#pragma pack(push, 1)

struct FMX_ExternCallStruct;
using FMX_ExternCallPtr = FMX_ExternCallStruct*;
using FMX_ExternCallProc = void (*)(FMX_ExternCallPtr);

using FMX_StartScriptCall = FMX_ErrorCode (*)(const FMX_Text* fileName, const FMX_Text* scriptName,
                                              FMX_ScriptControl control, const FMX_Data* parameter);
using FMX_CurrentEnvCall = FMX_ErrorCode (*)(FMX_ExprEnv* env);

/// One message of the host to a plug-in.
struct FMX_ExternCallStruct {
  FMX_Int16 extnVersion;          ///< the host extension version
  fmx::unusedid unusedID;         ///< -1
  FMX_ExternCallProc entryPoint;  ///< the plug-in's own entry point
  FMX_Boolean unusedFlag;
  FMX_ExternCallSwitch whichCall;  ///< the message
  FMX_Boolean unsafeCalls;         ///< true when not on the main thread
  FMX_UChar parm1;                 ///< depends on the message, like the next two
  FMX_PtrType parm2;
  FMX_PtrType parm3;
  FMX_PtrType instanceID;  ///< macOS: the bundle reference
  FMX_PtrType result;      ///< the answer, or the address of its buffer
  FMX_PtrType unused;
  FMX_StartScriptCall cStartScript;
  FMX_CurrentEnvCall cCurrentEnv;
};

#pragma pack(pop)

static_assert(sizeof(FMX_ExternCallStruct) == 74, "the host's call record is packed");

/// The plug-in's one entry point.
extern "C" void FMExternCallProc(FMX_ExternCallPtr call);

/// The message being handled; defined by the plug-in, set by its entry point before anything else.
extern FMX_ExternCallPtr gFMX_ExternCallPtr;

#define FMX_StartScript(fileName, scriptName, control, parameter) \
  ((gFMX_ExternCallPtr)->cStartScript((fileName), (scriptName), (control), (parameter)))
#define FMX_SetToCurrentEnv(env) ((gFMX_ExternCallPtr)->cCurrentEnv((env)))
