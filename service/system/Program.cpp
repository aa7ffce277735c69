#include "system/Program.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

extern char** environ;  // NOLINT(readability-redundant-declaration): macOS does not declare it

namespace service {

std::string RunProgram(const Words& words, Output output) {
  std::string line;
  for (const std::string& word : words) line += (line.empty() ? "" : " ") + word;
  std::vector<char*> arguments;
  for (const std::string& word : words) arguments.push_back(const_cast<char*>(word.c_str()));  // never modified
  arguments.push_back(nullptr);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  if (output == Output::kDiscard) {
    for (const int stream : {STDOUT_FILENO, STDERR_FILENO})
      posix_spawn_file_actions_addopen(&actions, stream, "/dev/null", O_WRONLY, 0);
  }
  pid_t child = 0;
  const int error = posix_spawnp(&child, arguments[0], &actions, nullptr, arguments.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  if (error != 0) return line + ": " + std::strerror(error);
  int status = 0;
  while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
  }
  return status == 0 ? "" : line + " failed";
}

}  // namespace service
