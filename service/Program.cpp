#include "Program.h"

#include <spawn.h>
#include <sys/wait.h>

#include <cerrno>
#include <cstring>

extern char** environ;  // NOLINT(readability-redundant-declaration): macOS does not declare it

namespace service {

std::string RunProgram(const Words& words) {
  std::string line;
  for (const std::string& word : words) line += (line.empty() ? "" : " ") + word;
  std::vector<char*> arguments;
  for (const std::string& word : words) arguments.push_back(const_cast<char*>(word.c_str()));  // spawn changes none
  arguments.push_back(nullptr);
  pid_t child = 0;
  if (const int error = posix_spawnp(&child, arguments[0], nullptr, nullptr, arguments.data(), environ); error != 0) {
    return line + ": " + std::strerror(error);
  }
  int status = 0;
  while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
  }
  return status == 0 ? "" : line + " failed";
}

}  // namespace service
