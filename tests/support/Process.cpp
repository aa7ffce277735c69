#include "tests/support/Process.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>

extern char** environ;

namespace {

// A file without a name.
int TemporaryFile() {
  char path[] = "/tmp/varnix-process-XXXXXX";
  const int file = mkostemp(path, O_CLOEXEC);
  unlink(path);
  return file;
}

std::string Contents(int file) {
  std::string contents;
  char bytes[65536];
  lseek(file, 0, SEEK_SET);
  for (ssize_t count; (count = read(file, bytes, sizeof bytes)) > 0;)
    contents.append(bytes, static_cast<size_t>(count));
  close(file);
  return contents;
}

}  // namespace

ProcessResult RunProcess(const std::vector<std::string>& arguments, const std::string& input) {
  const int in = TemporaryFile(), out = TemporaryFile(), err = TemporaryFile();
  if (write(in, input.data(), input.size()) != static_cast<ssize_t>(input.size())) std::abort();
  lseek(in, 0, SEEK_SET);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, in, 0);
  posix_spawn_file_actions_adddup2(&actions, out, 1);
  posix_spawn_file_actions_adddup2(&actions, err, 2);
  std::vector<char*> argv;
  for (const auto& argument : arguments) argv.push_back(const_cast<char*>(argument.c_str()));
  argv.push_back(nullptr);

  ProcessResult result;
  pid_t child = 0;
  if (posix_spawn(&child, argv[0], &actions, nullptr, argv.data(), environ) == 0) {
    int status = 0;
    waitpid(child, &status, 0);
    result.status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  }
  posix_spawn_file_actions_destroy(&actions);
  close(in);
  result.output = Contents(out);
  result.errors = Contents(err);
  return result;
}
