// A plug-in that leaves objects and a function behind, and lets exceptions escape to the host.
#pragma GCC visibility push(default)
#include <FMWrapper/FMXExtern.h>
#pragma GCC visibility pop

#include <FMWrapper/FMXTypes.h>

#include <FMWrapper/FMXCalcEngine.h>
#include <FMWrapper/FMXData.h>
#include <FMWrapper/FMXFixPt.h>
#include <FMWrapper/FMXText.h>

#include <stdexcept>

FMX_ExternCallPtr gFMX_ExternCallPtr = nullptr;

namespace {

constexpr short kFirstHost = 56;
bool throwsOnIdle = false;

fmx::errcode Leak(short, const fmx::ExprEnv&, const fmx::DataVect&, fmx::Data&) {
  fmx::_fmxcpt x;
  fmx::FM_Text_Constructor1(x);
  fmx::FM_Text_Constructor1(x);
  return 0;
}

// Starts the script named by argument 1 in the file named by argument 0; the result is the host's error.
fmx::errcode StartScript(short, const fmx::ExprEnv&, const fmx::DataVect& args, fmx::Data& result) {
  const fmx::DataUniquePtr parameter;
  const fmx::FixPtUniquePtr error(FMX_StartScript(&args.AtAsText(0), &args.AtAsText(1), kFMXT_Pause, parameter.get()));
  result.SetAsNumber(*error);
  return 0;
}

// The file that the plug-in's own context sees after it is bound to the current file.
fmx::errcode CurrentFile(short, const fmx::ExprEnv&, const fmx::DataVect&, fmx::Data& result) {
  const fmx::ExprEnvUniquePtr env;
  const fmx::TextUniquePtr expression;
  expression->Assign("Get ( FileName )", fmx::Text::kEncoding_UTF8);
  FMX_SetToCurrentEnv(env.get());
  return env->Evaluate(*expression, result);
}

// Now, and with the next idle message.
fmx::errcode Throw(short, const fmx::ExprEnv&, const fmx::DataVect&, fmx::Data&) {
  throwsOnIdle = true;
  throw std::runtime_error("out of ink");
}

void Register(short id, const char* name, short arguments, fmx::ExtPluginType function) {
  const fmx::QuadCharUniquePtr plugin('C', 'a', 'r', 'e');
  const fmx::TextUniquePtr text;
  text->Assign(name, fmx::Text::kEncoding_UTF8);
  fmx::ExprEnv::RegisterExternalFunction(*plugin, id, *text, *text, arguments, arguments, 0xFF00, function);
}

}  // namespace

void FMExternCallProc(FMX_ExternCallPtr call) {
  gFMX_ExternCallPtr = call;
  if (call->whichCall == kFMXT_Init && call->extnVersion < kFirstHost) {
    fmx::_fmxcpt x;
    fmx::FM_Text_Constructor1(x);
    call->result = static_cast<FMX_PtrType>(kDoNotEnable);
  } else if (call->whichCall == kFMXT_Init) {
    Register(1, "Careless.Leak", 0, Leak);
    Register(2, "Careless.StartScript", 2, StartScript);
    Register(3, "Careless.CurrentFile", 0, CurrentFile);
    Register(4, "Careless.Throw", 0, Throw);
    call->result = 76;
  }
  if (call->whichCall == kFMXT_Idle && throwsOnIdle) throw 7;
  if (call->whichCall == kFMXT_Shutdown) {
    const fmx::QuadCharUniquePtr plugin('C', 'a', 'r', 'e');
    for (const short id : {2, 3, 4}) fmx::ExprEnv::UnRegisterExternalFunction(*plugin, id);
  }
  if (call->whichCall == kFMXT_GetString) {
    auto* out = reinterpret_cast<fmx::unichar16*>(call->result);
    for (const char* c = call->parm1 == kFMXT_OptionsStr ? "Care1nnnYnn" : "Careless"; *c != 0; ++c) *out++ = *c;
    *out = 0;
  }
}
