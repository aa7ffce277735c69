// A diagnostic report of what the plug-in sees from a calculation context. FileMaker's main thread only.
#pragma once

#include <string>

#include "core/CalcEngine.h"

/// What the report shows of the bridge.
struct BridgeStatus {
  bool registered = false;
  std::string baseUrl;
  std::string registeredFile;
  std::string pendingTarget;  ///< file that a schema request waits for
  bool pendingSchemaReady = false;
};

/// One line of JSON: version, `bridge`, current file, windows, account, open files, and the scripts of the target file
/// with the number of live-push scripts among them. `targetFileName` is UTF-8, a file name or a window title; "" means
/// the current file. Never fails; what cannot be evaluated is left empty. `env` may be null.
std::string BuildContextDebug(const fmx::ExprEnv* env, const std::string& targetFileName, const BridgeStatus& bridge);
