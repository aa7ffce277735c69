// The simulated FileMaker with the plug-in, idling at its prompt, as a process whose clock is fast.
#pragma once

#include <sys/types.h>

#include <string>

/// What a process takes of the system.
struct Footprint {
  long residentKb = 0;
  long threads = 0;
  long descriptors = 0;  ///< of the thread with the most; threads may have a table of their own
};

class FastFileMaker {
 public:
  /// With the file "Workshop" open; settings and temporary files are in `folder`.
  explicit FastFileMaker(const std::string& folder);
  ~FastFileMaker();
  FastFileMaker(const FastFileMaker&) = delete;
  FastFileMaker& operator=(const FastFileMaker&) = delete;

  void Type(const std::string& line);
  Footprint Measure() const;
  /// What it has printed, results and errors.
  std::string Printed() const;
  /// Ends its input and waits for its end, for a minute at most. Its exit status; -1 when it did not exit.
  int End();

 private:
  const std::string output_;
  pid_t child_ = -1;
  int input_ = -1;
};
