#include "fmsim/Session.h"

#include <algorithm>
#include <iostream>
#include <utility>

#include "application/ScriptRunner.h"
#include "calc/Engine.h"
#include "calc/Unicode.h"
#include "fmsim/Completion.h"
#include "fmsim/ErrorTexts.h"
#include "fmsim/Signals.h"

namespace {

using std::chrono::steady_clock;

// With FileMaker's carriage returns, lines would overwrite each other on a terminal.
std::string Printable(const std::string& text) {
  std::string lines;
  lines.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool crLf = text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n';
    if (!crLf) lines += text[i] == '\r' ? '\n' : text[i];
  }
  return lines;
}

void Report(const std::string& line) {
  std::cout.flush();
  std::cerr << Printable(line) << '\n';
}

}  // namespace

Session::Session() {
  application_.cancelFlag = &CaughtSignal();
  application_.onPluginThrew = [this](const std::string& line) {
    Fail(line);
    pluginThrew_ = true;
  };
  auto behaviour = application_.behaviour();
  behaviour.report = Report;
  application_.SetBehaviour(behaviour);
}

bool Session::Fail(const std::string& message) {
  failed_ = true;
  std::cout.flush();
  std::cerr << message << '\n';
  return false;
}

bool Session::LoadPlugin(const std::string& path) {
  std::string error;
  return application_.plugins().Load(path, error) || Fail(error);
}

bool Session::Open(const std::string& path) {
  std::string error;
  if (!application_.files().Open(path, error)) return Fail(error);
  for (const auto& note : application_.files().all().back()->solution.notes) Report(note);
  return true;
}

bool Session::Activate(const std::string& fileName) {
  std::string error;
  return application_.files().Activate(calc::ToUtf16(fileName), error) || Fail(error);
}

bool Session::Calculate(std::string_view formula, calc::Value& value, std::string& failure) {
  application_.unknownName.clear();
  const int error = application_.Evaluate(calc::ToUtf16(formula), value);
  if (error == 0) return true;
  failure = ErrorText(error);
  if (application_.unknownName.empty()) return false;
  const std::string name = calc::ToUtf8(application_.unknownName);
  failure += ": \"" + name + '"';
  if (const auto nearest = NearestName(*this, name); !nearest.empty()) failure += ". Did you mean " + nearest + '?';
  return false;
}

void Session::Print(const calc::Value& value) { std::cout << Printable(calc::ToUtf8(value.AsText())) << std::endl; }

bool Session::Evaluate(std::string_view formula) {
  calc::Value value;
  std::string failure;
  const bool succeeded = Calculate(formula, value, failure);
  if (succeeded || value.IsError()) Print(value);
  return succeeded || Fail(failure);
}

bool Session::Check(std::string_view formula) {
  calc::Value value;
  std::string failure;
  if (!Calculate(formula, value, failure)) return Fail("NOT OK  " + std::string(formula) + "  (" + failure + ")");
  if (!value.AsBoolean()) return Fail("NOT OK  " + std::string(formula));
  std::cout << "ok      " << formula << std::endl;
  return true;
}

void Session::SetScriptParameter(const std::string& text) {
  scriptParameter_ = calc::Value::OfText(calc::ToUtf16(text));
}

bool Session::EvaluateScriptParameter(std::string_view formula) {
  std::string failure;
  return Calculate(formula, scriptParameter_, failure) || Fail(failure);
}

bool Session::RunScript(const std::string& name) {
  const auto parameter = std::exchange(scriptParameter_, {});
  auto* file = application_.files().active();
  if (file == nullptr) return Fail("cannot run a script: no file is open");
  const auto* script = file->solution.FindScript(calc::ToUtf16(name));
  if (script == nullptr) {
    return Fail("no script \"" + name + "\" in \"" + calc::ToUtf8(file->solution.name) + "\" (" + ErrorText(104) + ")");
  }
  return Run({file, script, parameter}, true);
}

bool Session::Run(const sim::QueuedScript& queued, bool printResult) {
  const sim::ScriptSurroundings surroundings{
      Report, [this](int level, std::chrono::milliseconds duration) { IdleFor(level, duration); }};
  calc::Value result;
  const bool succeeded =
      sim::RunScript(application_, surroundings, *queued.file, *queued.script, queued.parameter, result);
  if (!succeeded) failed_ = true;
  if (printResult && !result.AsText().empty() && !application_.IsCancelled()) Print(result);
  return succeeded;
}

bool Session::Idle(int level) {
  lastIdle_ = steady_clock::now();
  application_.plugins().Idle(level);
  if (application_.runningScript != nullptr) return false;
  bool ran = false;
  while (const auto script = application_.TakeQueuedScript()) {
    Run(*script, false);
    ran = true;
  }
  return ran;
}

bool Session::AwaitInput(int descriptor, const std::function<void()>& onScript) {
  bool ready = false;
  while (!ready && CaughtSignal() == 0) {
    if (steady_clock::now() >= NextIdle() && Idle(idleLevel_)) onScript();
    ready = WaitForInput(descriptor, NextIdle());
  }
  return CaughtSignal() == 0;
}

void Session::IdleFor(std::chrono::milliseconds duration) { IdleFor(idleLevel_, duration); }

void Session::IdleFor(int level, std::chrono::milliseconds duration) {
  const auto end = steady_clock::now() + duration;
  do {
    Idle(level);
    WaitForInput(-1, std::min(NextIdle(), end));
  } while (steady_clock::now() < end && CaughtSignal() == 0);
}

void Session::Quit() {
  for (const auto& fault : application_.plugins().Quit()) Fail(fault);
  if (!std::cout.flush()) Fail("the results could not be written");
}
