// A calculation environment for idle calls, which have none of their own.
#pragma once

#include <FMWrapper/FMXExtern.h>

#include <string>

#include "core/CalcEngine.h"
#include "core/HostText.h"

/// An environment that is bound to the file that is current when it is created. FileMaker's main thread only, and only
/// while `call` is being handled.
class CurrentContext {
 public:
  explicit CurrentContext(const FMX_ExternCallStruct& call) { call.cCurrentEnv(env_.get()); }

  fmx::ExprEnv* get() const { return env_.get(); }

 private:
  const fmx::ExprEnvUniquePtr env_;
};

/// The name of FileMaker's current file, "" when there is none. During the evaluation FileMaker may call the plug-in
/// again. FileMaker's main thread only, and only while `call` is being handled.
inline std::string CurrentFileName(const FMX_ExternCallStruct& call) {
  return EvalCalc(CurrentContext(call).get(), "Get(FileName)");
}
