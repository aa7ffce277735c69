// Installs the service with a test's folder as home, and with a stand-in for the system's tool.
#pragma once

#include <sys/stat.h>

#include <cstdlib>
#include <fstream>
#include <string>
#include <utility>
#include <vector>

#include "support/FolderTest.h"
#include "support/Process.h"

class InstallTest : public FolderTest {
 protected:
  InstallTest() {
    setenv("PATH", (folder_ + ':' + path_).c_str(), 1);
    unsetenv("VARNIX_KEY");
  }
  ~InstallTest() override { setenv("PATH", path_.c_str(), 1); }

  /// Replaces the system's tool `name` with one that records its arguments for Calls() and then runs `commands`.
  void MakeTool(const std::string& name, const std::string& commands = "") const {
    const std::string file = folder_ + '/' + name;
    std::ofstream(file) << "#!/bin/sh\necho \"$@\" >> " << folder_ << "/calls\n" << commands << '\n';
    chmod(file.c_str(), 0700);
  }
  std::string Calls() const { return Contents(folder_ + "/calls"); }

  static ProcessResult Run(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), SERVICE);
    return RunProcess(arguments);
  }

 private:
  const std::string path_ = std::getenv("PATH");
};
