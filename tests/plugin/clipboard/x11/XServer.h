// A private X server for a test.
#pragma once

#include <string>

#include "support/Process.h"

/// Xvfb on a free display. It ends when its last client leaves, so that nothing stays behind a test that crashes; and
/// at once, as when the machine's display crashes, when this is destroyed.
class XServer {
 public:
  explicit XServer(const std::string& missingExtension = "none") : extension_(missingExtension) {}

  /// Ready when made; ":" when it has not started.
  const std::string& display() const { return display_; }

 private:
  const std::string extension_;
  ChildProcess process_{{XVFB, "-displayfd", "1", "-terminate", "-extension", extension_}, "/dev/null"};
  const std::string display_ = ":" + process_.ReadLine();
};
