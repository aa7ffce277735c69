// Runs scripts, as far as the simulated application supports their steps.
#pragma once

#include <chrono>
#include <functional>
#include <string>

#include "application/Application.h"

namespace sim {

/// The services that a running script needs.
struct ScriptSurroundings {
  /// Shows one line to the user.
  std::function<void(const std::string& line)> show;
  /// Sends idle messages of `level` for `duration`, at least one.
  std::function<void(int level, std::chrono::milliseconds duration)> idle;
};

/// Runs `script` of `file` to its end. Returns false when a step failed (the script goes on, as in FileMaker, and the
/// failure is shown), or when the application's cancel flag ended it. Steps that are not simulated are reported and
/// skipped. `result` is that of Exit Script.
bool RunScript(Application& application, const ScriptSurroundings& surroundings, OpenFile& file, const Script& script,
               const calc::Value& parameter, calc::Value& result);

}  // namespace sim
