// Running and queued scripts.
#pragma once

#include "application/Files.h"
#include "calc/Value.h"

namespace sim {

/// A running script. Get ( ... ) functions read it.
struct ScriptFrame {
  OpenFile* file = nullptr;
  const Script* script = nullptr;
  calc::Value parameter;
  calc::Value result;
  int lastError = 0;
  bool errorCapture = false;  ///< the script handles failures itself: they are neither shown nor counted
  calc::Variables locals;
};

/// A script that a plug-in has queued.
struct QueuedScript {
  OpenFile* file = nullptr;
  const Script* script = nullptr;
  calc::Value parameter;
};

}  // namespace sim
