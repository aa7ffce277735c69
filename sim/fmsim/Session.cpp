#include "sim/fmsim/Session.h"

#include <csignal>
#include <iostream>
#include <thread>

#include "sim/application/ScriptRunner.h"
#include "sim/calc/Engine.h"
#include "sim/calc/Unicode.h"
#include "sim/fmsim/ErrorTexts.h"

namespace {

volatile std::sig_atomic_t interrupted = 0;

// FileMaker's carriage returns would overwrite each other on a terminal.
std::string Printable(const std::string& text) {
  std::string lines;
  lines.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool crLf = text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n';
    if (!crLf) lines += text[i] == '\r' ? '\n' : text[i];
  }
  return lines;
}

}  // namespace

bool Interrupted() { return interrupted != 0; }

void CatchInterrupts() {
  struct sigaction action {};
  action.sa_handler = [](int) { interrupted = 1; };
  sigaction(SIGINT, &action, nullptr);
  sigaction(SIGTERM, &action, nullptr);
}

Session::Session() = default;
Session::~Session() { Quit(); }

bool Session::Fail(const std::string& message) {
  failed_ = true;
  std::cout.flush();
  std::cerr << message << '\n';
  return false;
}

bool Session::LoadPlugin(const std::string& path) {
  std::string error;
  return application_.LoadPlugin(path, error) || Fail(error);
}

bool Session::Open(const std::string& path) {
  std::string error;
  return application_.Open(path, error) || Fail(error);
}

bool Session::Activate(const std::string& fileName) {
  std::string error;
  return application_.Activate(calc::ToUtf16(fileName), error) || Fail(error);
}

bool Session::Evaluate(std::string_view formula) {
  calc::Value value;
  const int error = application_.Evaluate(calc::ToUtf16(formula), value);
  if (error != 0) return Fail(ErrorText(error));
  std::cout << Printable(calc::ToUtf8(value.AsText())) << std::endl;
  return true;
}

bool Session::Check(std::string_view formula) {
  calc::Value value;
  const int error = application_.Evaluate(calc::ToUtf16(formula), value);
  if (error != 0) return Fail("NOT OK  " + std::string(formula) + "  (" + ErrorText(error) + ")");
  if (!value.AsBoolean()) return Fail("NOT OK  " + std::string(formula));
  std::cout << "ok      " << formula << std::endl;
  return true;
}

bool Session::RunScript(const std::string& name) {
  auto* file = application_.activeFile();
  if (file == nullptr) return Fail("no file is open to run a script of");
  const auto* script = file->solution.FindScript(calc::ToUtf16(name));
  if (script == nullptr) {
    return Fail("no script \"" + name + "\" in \"" + calc::ToUtf8(file->solution.name) + "\" (" + ErrorText(104) + ")");
  }
  return Run({file, script, {}}, true);
}

bool Session::Run(const sim::QueuedScript& queued, bool printResult) {
  const sim::ScriptSurroundings surroundings{
      [](const std::string& line) {
        std::cout.flush();
        std::cerr << Printable(line) << '\n';
      },
      [this](int level, std::chrono::milliseconds duration) { IdleFor(level, duration); }};
  calc::Value result;
  if (!sim::RunScript(application_, surroundings, *queued.file, *queued.script, queued.parameter, result)) {
    failed_ = true;
    return false;
  }
  if (printResult && !result.IsEmpty()) std::cout << Printable(calc::ToUtf8(result.AsText())) << std::endl;
  return true;
}

void Session::Idle() {
  application_.Idle(idleLevel_);
  while (const auto script = application_.TakeQueuedScript()) {
    Run(*script, false);
  }
}

void Session::IdleFor(std::chrono::milliseconds duration) { IdleFor(idleLevel_, duration); }

void Session::IdleFor(int level, std::chrono::milliseconds duration) {
  const auto end = std::chrono::steady_clock::now() + duration;
  for (;;) {
    if (application_.runningScript == nullptr) {
      Idle();
    } else {
      application_.Idle(level);
    }
    const auto next = std::chrono::steady_clock::now() + idleInterval_;
    if (next > end || Interrupted()) break;
    std::this_thread::sleep_until(next);
  }
}

void Session::Quit() {
  for (const auto& fault : application_.Quit()) Fail(fault);
  if (!std::cout.flush()) Fail("the results could not be written");
}
