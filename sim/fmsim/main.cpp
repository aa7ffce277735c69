// fmsim: the simulated FileMaker on the command line.
#include <unistd.h>

#include <clocale>
#include <cstdlib>
#include <iostream>

#include "fmsim/Options.h"
#include "fmsim/Prompt.h"
#include "fmsim/Signals.h"

namespace {

constexpr int kWrongUsage = 2;
constexpr int kSignalled = 128;  // plus the signal, as in a shell

int Run(int argc, char** argv) {
  CommandLine line;
  std::string error;
  if (!ParseCommandLine(argc, argv, line, error)) {
    std::cerr << "fmsim: " << error << '\n' << Usage();
    return kWrongUsage;
  }
  if (line.help) {
    std::cout << Usage();
    return 0;
  }
  CatchSignals();
  Session session;
  for (const auto& action : line.actions) {
    if (CaughtSignal() == 0) action(session);
  }
  if (!line.evaluates && CaughtSignal() == 0) isatty(STDIN_FILENO) != 0 ? RunPrompt(session) : RunLines(session);
  session.Quit();
  if (CaughtSignal() != 0) return kSignalled + CaughtSignal();
  return session.failed() ? EXIT_FAILURE : EXIT_SUCCESS;
}

}  // namespace

int main(int argc, char** argv) {
  if (std::setlocale(LC_CTYPE, "") == nullptr || MB_CUR_MAX == 1) std::setlocale(LC_CTYPE, "C.UTF-8");
  return Run(argc, argv);
}
