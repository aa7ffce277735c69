// The simulated FileMaker with the plug-in, idling at its prompt, as a process whose clock is fast.
#pragma once

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <utility>

inline std::string Contents(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

/// What a process takes of the system.
struct Footprint {
  long residentKb = 0;
  long threads = 0;
  long descriptors = 0;  ///< of the thread with the most; threads may have a table of their own
};

class FastFileMaker {
 public:
  /// With the file "Workshop" open; settings and temporary files are in `folder`.
  explicit FastFileMaker(const std::string& folder) : folder_(folder) {
    // No more than this: neither the clipboard nor the notifications of whoever runs the tests. One arena, because the
    // memory that threads keep in arenas of their own depends on which of them happens to run what.
    std::string environment = "LD_PRELOAD=\"" FAST_CLOCK "\" MALLOC_ARENA_MAX=1";
    for (const char* name : {"HOME", "XDG_CONFIG_HOME", "PATH", "TMPDIR"})
      environment += std::string(" ") + name + "=$PWD";
    const std::string fmsim = "\"" FMSIM "\" --plugin \"" PLUGIN_FILE "\" --open \"" SAMPLES
                              "/Workshop.xml\" --idle-interval 1 > printed 2>&1";
    const std::string command = "cd " + folder + "; exec timeout -s KILL 110 sh -c 'echo $$ > process; exec env -i " +
                                environment + ' ' + fmsim + "'";
    input_ = popen(command.c_str(), "we");
  }
  ~FastFileMaker() { End(); }
  FastFileMaker(const FastFileMaker&) = delete;
  FastFileMaker& operator=(const FastFileMaker&) = delete;

  void Type(const std::string& line) {
    std::fputs((line + '\n').c_str(), input_);
    std::fflush(input_);
  }

  Footprint Measure() const {
    const std::string process = "/proc/" + std::to_string(std::stoi(Contents(folder_ + "/process")));
    Footprint footprint;
    std::ifstream status(process + "/status");
    for (std::string word; status >> word;) {
      if (word == "VmRSS:") status >> footprint.residentKb;
      if (word == "Threads:") status >> footprint.threads;
    }
    for (const auto& task : std::filesystem::directory_iterator(process + "/task")) {
      const auto open = std::filesystem::directory_iterator(task.path() / "fd");
      footprint.descriptors = std::max<long>(footprint.descriptors, std::distance(begin(open), end(open)));
    }
    return footprint;
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
