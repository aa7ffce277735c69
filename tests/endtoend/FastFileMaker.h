// The simulated FileMaker with the plug-in, idling at its prompt, as a process whose clock is fast.
#pragma once

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "support/Process.h"

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
  explicit FastFileMaker(const std::string& folder)
      : folder_(folder), process_(Arguments(folder), folder + "/errors") {}

  void Type(const std::string& line) { process_.Write(line + '\n'); }

  Footprint Measure() const {
    const std::string process = "/proc/" + std::to_string(process_.pid());
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

  /// Ends its input and waits for its end. Its exit status, or 128 and the signal that ended it.
  int End() { return process_.End(); }

  /// The next line of its results, and all errors so far.
  std::string ReadLine() { return process_.ReadLine(); }
  std::string Errors() const { return Contents(folder_ + "/errors"); }

 private:
  // No more of the environment than this: neither the clipboard nor the notifications of whoever runs the tests. One
  // arena, because the memory that threads keep in arenas of their own depends on which of them happens to run what.
  static std::vector<std::string> Arguments(const std::string& folder) {
    std::vector<std::string> arguments{"env", "-i", "-C", folder, "LD_PRELOAD=" FAST_CLOCK, "MALLOC_ARENA_MAX=1"};
    for (const char* name : {"HOME", "XDG_CONFIG_HOME", "PATH", "TMPDIR"}) {
      arguments.push_back(std::string(name) + '=' + folder);
    }
    arguments.insert(arguments.end(),
                     {FMSIM, "--plugin", PLUGIN_FILE, "--open", SAMPLES "/Workshop.xml", "--idle-interval", "1"});
    return arguments;
  }

  const std::string folder_;
  ChildProcess process_;
};
