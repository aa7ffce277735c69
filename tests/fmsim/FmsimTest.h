// fmsim as a process, with settings of its own and small exports to open.
#pragma once

#include <cstdlib>
#include <string>
#include <vector>

#include "tests/application/SmallExport.h"
#include "tests/support/Process.h"

class Fmsim : public SmallExports {
 protected:
  Fmsim() {
    setenv("XDG_CONFIG_HOME", folder_.c_str(), 1);
    unsetenv("DISPLAY");  // the clipboard of whoever runs the tests is not ours
  }

  static ProcessResult Run(std::vector<std::string> arguments, const std::string& input = "") {
    arguments.insert(arguments.begin(), FMSIM);
    return RunProcess(arguments, input);
  }
};
