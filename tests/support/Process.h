// Other programs, run by a test.
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

struct ProcessResult {
  int status = -1;  ///< exit status, or 128 and the signal that ended it
  std::string output;
  std::string errors;
};

/// Runs `arguments` (the program first) with `input` as its standard input and collects what it prints.
ProcessResult RunProcess(const std::vector<std::string>& arguments, const std::string& input = "");

/// A program that runs in parallel with the test. One thread at a time.
class ChildProcess {
 public:
  /// Starts `arguments`: the program, found along $PATH, comes first. Its standard error is appended to the file
  /// `errors`; without one it is the test's.
  explicit ChildProcess(const std::vector<std::string>& arguments, const std::string& errors = "");
  /// Kills it if it has not ended.
  ~ChildProcess();
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;

  pid_t pid() const { return pid_; }

  /// The next line of its standard output, without the line ending; "" at the end of it. Waits.
  std::string ReadLine();
  /// Writes to its standard input.
  void Write(const std::string& text);

  /// Closes its standard input, sends `signal` unless that is 0, and waits for its end. Returns its exit status, or 128
  /// plus the signal that ended it; -1 if it was ended before.
  int End(int signal = 0);

 private:
  pid_t pid_ = -1;
  int input_ = -1;
  int output_ = -1;
};
