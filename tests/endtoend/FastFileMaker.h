// The simulated FileMaker with the plug-in, idling at its prompt, as a process whose clock is fast.
#pragma once

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>
#include <utility>

inline std::string Contents(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

class FastFileMaker {
 public:
  /// With the file "Workshop" open; settings and temporary files are in `folder`.
  explicit FastFileMaker(const std::string& folder) : folder_(folder) {
    // No more than this: neither the clipboard nor the notifications of whoever runs the tests.
    std::string environment = "LD_PRELOAD=\"" FAST_CLOCK "\"";
    for (const char* name : {"HOME", "XDG_CONFIG_HOME", "PATH", "TMPDIR"})
      environment += std::string(" ") + name + "=$PWD";
    const std::string fmsim = "\"" FMSIM "\" --plugin \"" PLUGIN_FILE "\" --open \"" SAMPLES
                              "/Workshop.xml\" --idle-interval 1 > printed 2>&1";
    const std::string command = "cd " + folder + "; exec timeout -s KILL 110 env -i " + environment + ' ' + fmsim;
    input_ = popen(command.c_str(), "we");
  }
  ~FastFileMaker() { End(); }
  FastFileMaker(const FastFileMaker&) = delete;
  FastFileMaker& operator=(const FastFileMaker&) = delete;

  void Type(const std::string& line) {
    std::fputs((line + '\n').c_str(), input_);
    std::fflush(input_);
  }

  /// What it has printed, results and errors.
  std::string Printed() const { return Contents(folder_ + "/printed"); }

  /// Ends its input and waits for its end. Its exit status; -1 when it did not exit.
  int End() {
    if (input_ == nullptr) return -1;
    const int status = pclose(std::exchange(input_, nullptr));
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }

 private:
  const std::string folder_;
  std::FILE* input_ = nullptr;
};
