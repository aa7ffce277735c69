#include "support/Process.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <utility>

extern "C" char** environ;  // which macOS declares nowhere

namespace {

/// Has no name, so it disappears when it is closed.
int TemporaryFile() {
  std::string path = std::filesystem::temp_directory_path() / "varnix-process-XXXXXX";
  const int file = mkostemp(path.data(), O_CLOEXEC);
  if (file < 0 || unlink(path.c_str()) != 0) std::abort();
  return file;
}

std::string Contents(int file) {
  std::string contents(static_cast<std::size_t>(lseek(file, 0, SEEK_END)), '\0');
  if (pread(file, contents.data(), contents.size(), 0) != static_cast<ssize_t>(contents.size())) std::abort();
  return contents;
}

/// A pipe that child processes do not inherit.
void OpenPipe(int (&ends)[2]) {
  if (pipe(ends) != 0) std::abort();
  for (const int end : ends) fcntl(end, F_SETFD, FD_CLOEXEC);
}

// Starts the program with its first descriptors being `streams`; a stream of -1 is inherited. -1 when it cannot be
// started.
pid_t Spawn(const std::vector<std::string>& arguments, const int (&streams)[3]) {
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  for (int stream = 0; stream < 3; ++stream) {
    if (streams[stream] >= 0) posix_spawn_file_actions_adddup2(&actions, streams[stream], stream);
  }
  std::vector<char*> argv;
  for (const auto& argument : arguments) argv.push_back(const_cast<char*>(argument.c_str()));
  argv.push_back(nullptr);
  pid_t child = -1;
  if (posix_spawnp(&child, argv[0], &actions, nullptr, argv.data(), environ) != 0) child = -1;
  posix_spawn_file_actions_destroy(&actions);
  return child;
}

int WaitFor(pid_t child) {
  int status = 0;
  waitpid(child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

}  // namespace

ProcessResult RunProcess(const std::vector<std::string>& arguments, const std::string& input) {
  const int files[] = {TemporaryFile(), TemporaryFile(), TemporaryFile()};
  if (pwrite(files[0], input.data(), input.size(), 0) != static_cast<ssize_t>(input.size())) std::abort();
  ProcessResult result;
  if (const pid_t child = Spawn(arguments, files); child > 0) {
    const int status = WaitFor(child);
    result = {status, Contents(files[1]), Contents(files[2])};
  }
  for (const int file : files) close(file);
  return result;
}

ChildProcess::ChildProcess(const std::vector<std::string>& arguments, const std::string& errors) {
  int in[2], out[2];
  const int log = errors.empty() ? -1 : open(errors.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
  OpenPipe(in);
  OpenPipe(out);
  pid_ = Spawn(arguments, {in[0], out[1], log});
  input_ = in[1];
  output_ = out[0];
  close(in[0]);
  close(out[1]);
  if (log >= 0) close(log);
}

ChildProcess::~ChildProcess() {
  End(SIGKILL);
  close(output_);
}

std::string ChildProcess::ReadLine() {
  std::string line;
  for (char letter; read(output_, &letter, 1) == 1 && letter != '\n';) line += letter;
  return line;
}

void ChildProcess::Write(const std::string& text) {
  if (write(input_, text.data(), text.size()) != static_cast<ssize_t>(text.size())) std::abort();
}

int ChildProcess::End(int signal) {
  if (pid_ <= 0) return -1;
  close(input_);
  if (signal != 0) kill(pid_, signal);
  return WaitFor(std::exchange(pid_, -1));
}
