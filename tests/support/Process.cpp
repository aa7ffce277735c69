#include "support/Process.h"

#include <spawn.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <iterator>

namespace {

int TemporaryFile() { return memfd_create("varnix-process", MFD_CLOEXEC); }

std::string Contents(int file) {
  std::ifstream contents("/proc/self/fd/" + std::to_string(file), std::ios::binary);
  return {std::istreambuf_iterator<char>(contents), {}};
}

}  // namespace

ProcessResult RunProcess(const std::vector<std::string>& arguments, const std::string& input) {
  const int files[] = {TemporaryFile(), TemporaryFile(), TemporaryFile()};
  if (pwrite(files[0], input.data(), input.size(), 0) != static_cast<ssize_t>(input.size())) std::abort();
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  for (int stream = 0; stream < 3; ++stream) posix_spawn_file_actions_adddup2(&actions, files[stream], stream);
  std::vector<char*> argv;
  for (const auto& argument : arguments) argv.push_back(const_cast<char*>(argument.c_str()));
  argv.push_back(nullptr);

  ProcessResult result;
  pid_t child = 0;
  if (posix_spawn(&child, argv[0], &actions, nullptr, argv.data(), environ) == 0) {
    int status = 0;
    waitpid(child, &status, 0);
    result = {WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status), Contents(files[1]), Contents(files[2])};
  }
  posix_spawn_file_actions_destroy(&actions);
  for (const int file : files) close(file);
  return result;
}
