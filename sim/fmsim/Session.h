// One run of fmsim: the application, what it prints, and whether anything failed.
#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "application/Application.h"

/// Results go to standard output; events, errors and reports to standard error. Every method that can fail shows why,
/// remembers the failure for the exit status, and returns false.
class Session {
 public:
  Session();

  sim::Application& application() { return application_; }

  bool LoadPlugin(const std::string& path);
  bool Open(const std::string& path);
  bool Activate(const std::string& fileName);
  /// Prints the value of `formula`, with line feeds for returns. The error value prints as "?" and counts as a failure.
  bool Evaluate(std::string_view formula);
  /// Evaluates `formula` and shows whether it is true.
  bool Check(std::string_view formula);
  /// Sets the parameter of the next script that RunScript runs: a text, or the value of `formula`.
  void SetScriptParameter(const std::string& text);
  bool EvaluateScriptParameter(std::string_view formula);
  /// Runs a script of the active file and prints its result, if any.
  bool RunScript(const std::string& name);

  void SetIdleInterval(std::chrono::milliseconds interval) { idleInterval_ = interval; }
  void SetIdleLevel(int level) { idleLevel_ = level; }
  /// Waits until `descriptor` can be read. Meanwhile idle messages flow at the interval, and scripts that plug-ins have
  /// started run; `onScript` is called after each. False when a signal has been caught.
  bool AwaitInput(
      int descriptor, const std::function<void()>& onScript = [] {});
  /// Sends idle messages at the interval for `duration`, at least one, or until a signal is caught.
  void IdleFor(std::chrono::milliseconds duration);

  /// Prints `message` to standard error. Always false.
  bool Fail(const std::string& message);
  bool failed() const { return failed_ || pluginThrew_; }
  /// Mistakes typed at the prompt do not count as a failure of the run.
  void ForgetFailures() { failed_ = false; }

  /// Whether lines read from a pipe are shown before they are carried out.
  bool echo = false;

  /// Shuts the plug-ins down. Whatever they leave behind is reported and counts as a failure.
  void Quit();

 private:
  using Time = std::chrono::steady_clock::time_point;

  /// Evaluates `formula`; on failure `failure` says why.
  bool Calculate(std::string_view formula, calc::Value& value, std::string& failure);
  void Print(const calc::Value& value);
  void IdleFor(int level, std::chrono::milliseconds duration);
  /// Sends one idle message, and outside scripts runs those that plug-ins have started. Returns whether any ran.
  bool Idle(int level);
  Time NextIdle() const { return lastIdle_ + idleInterval_; }
  bool Run(const sim::QueuedScript& script, bool printResult);

  sim::Application application_;
  std::chrono::milliseconds idleInterval_{100};
  Time lastIdle_ = std::chrono::steady_clock::now();
  int idleLevel_ = 0;
  calc::Value scriptParameter_;
  bool failed_ = false;
  bool pluginThrew_ = false;
};
