// A private X server for a test or a benchmark.
#pragma once

#include <string>

#include "support/Process.h"

/// Xvfb on a free display. It ends when its last client disconnects, so that a crashing test leaves nothing behind.
/// When this is destroyed, it ends at once, as in a crash.
class XServer {
 public:
  explicit XServer(const std::string& missingExtension = "none") : extension_(missingExtension) {}

  /// Ready when constructed; ":" if the server did not start.
  const std::string& display() const { return display_; }

 private:
  const std::string extension_;
  ChildProcess process_{{XVFB, "-displayfd", "1", "-terminate", "-extension", extension_}, "/dev/null"};
  const std::string display_ = ":" + process_.ReadLine();
};
