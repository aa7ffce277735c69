// The entry point, through which FileMaker sends every message. FileMaker looks for it and for the call record by name;
// everything else in this file is compiled hidden.
#pragma GCC visibility push(default)
#include <FMWrapper/FMXExtern.h>
#pragma GCC visibility pop

#include "bridge/Background.h"
#include "bridge/IdleLoop.h"
#include "bridge/SignIn.h"
#include "core/FunctionTable.h"
#include "core/HostText.h"
#include "core/Product.h"

FMX_ExternCallPtr gFMX_ExternCallPtr = nullptr;

namespace {

constexpr short kMinimumHostVersion = 56;  // FileMaker 15, the first with described functions
constexpr short kEnabled = 76;

// Identifier, then flags by position: no preferences dialog (6), idle messages wanted (8).
constexpr char16_t kOptions[] = u"Vrnx1nnYYnn";

void Shutdown(short hostExtensionVersion) {
  SignOut();
  if (hostExtensionVersion >= kMinimumHostVersion) UnregisterExternalFunctions();
}

void GetString(int which, unsigned int capacity, fmx::unichar16* out) {
  switch (which) {
    case kFMXT_NameStr:
      return CopyUTF8ToUnichar16("Varnix", capacity, out);
    case kFMXT_AppConfigStr:
      return CopyUTF8ToUnichar16("Varnix background bridge for FileMaker", capacity, out);
    case kFMXT_OptionsStr:
      // A fixed block. FileMaker always has room for it, whatever capacity it reports.
      for (const char16_t unit : kOptions) *out++ = unit;
      return;
    case kFMXT_HelpURLStr:
      return CopyUTF8ToUnichar16(kGuideUrl, capacity, out);
    default:
      out[0] = 0;
  }
}

// Restores a saved sign-in and registers the functions. Returns the answer to the initialise message.
short Do_PluginInit(short hostExtensionVersion) {
  PrepareForUnload();
  RestoreSignIn();
  if (hostExtensionVersion < kMinimumHostVersion) return kDoNotEnable;
  return RegisterExternalFunctions() == 0 ? kEnabled : static_cast<short>(kDoNotEnable);
}

}  // namespace

void FMExternCallProc(FMX_ExternCallPtr call) {
  gFMX_ExternCallPtr = call;
  switch (call->whichCall) {
    case kFMXT_Init:
      call->result = static_cast<FMX_PtrType>(Do_PluginInit(call->extnVersion));
      break;
    case kFMXT_Idle:
      Do_PluginIdle(call);
      break;
    case kFMXT_Shutdown:
      Shutdown(call->extnVersion);
      break;
    case kFMXT_GetString:
      GetString(call->parm1, static_cast<unsigned int>(call->parm3), reinterpret_cast<fmx::unichar16*>(call->result));
      break;
    default:
      break;
  }
}
