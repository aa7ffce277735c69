// fmsim: the simulated FileMaker on the command line.
#include <pthread.h>
#include <unistd.h>

#include <clocale>
#include <csignal>
#include <cstdlib>
#include <iostream>

#include "sim/fmsim/Options.h"
#include "sim/fmsim/Prompt.h"

namespace {

constexpr int kWrongUsage = 2;
constexpr std::size_t kStackBytes = std::size_t{512} << 20;  // custom functions recurse thousands of levels deep

struct Arguments {
  int argc;
  char** argv;
  int status;
};

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
  CatchInterrupts();
  Session session;
  for (const auto& action : line.actions) {
    if (Interrupted()) break;
    action(session);
  }
  if (!line.evaluates) isatty(STDIN_FILENO) != 0 ? RunPrompt(session) : RunLines(session);
  session.Quit();
  return session.failed() ? EXIT_FAILURE : EXIT_SUCCESS;
}

}  // namespace

int main(int argc, char** argv) {
  if (std::setlocale(LC_CTYPE, "") == nullptr || MB_CUR_MAX == 1) std::setlocale(LC_CTYPE, "C.UTF-8");

  // FileMaker's main thread, with room for deep recursion; the stack is only reserved, not used.
  Arguments arguments{argc, argv, EXIT_FAILURE};
  pthread_attr_t attributes;
  pthread_attr_init(&attributes);
  pthread_attr_setstacksize(&attributes, kStackBytes);
  pthread_t thread;
  const auto body = [](void* data) -> void* {
    auto& given = *static_cast<Arguments*>(data);
    given.status = Run(given.argc, given.argv);
    return nullptr;
  };
  if (pthread_create(&thread, &attributes, body, &arguments) != 0) {
    std::cerr << "fmsim: cannot start its main thread\n";
    return EXIT_FAILURE;
  }
  // Ctrl-C must reach the thread that waits for input, not this one.
  sigset_t signals;
  sigemptyset(&signals);
  sigaddset(&signals, SIGINT);
  sigaddset(&signals, SIGTERM);
  pthread_sigmask(SIG_BLOCK, &signals, nullptr);
  pthread_join(thread, nullptr);
  return arguments.status;
}
