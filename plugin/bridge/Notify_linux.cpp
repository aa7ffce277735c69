// Notifications through the desktop's notify-send, if it is installed. It is started without a shell.
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <iterator>
#include <string_view>

#include "Utf8.h"
#include "bridge/Background.h"
#include "bridge/Background_linux.h"
#include "bridge/Notify.h"
#include "core/FileDescriptor.h"

namespace {

constexpr int kLongestRunMs = 5000;

// The system limits an argument to 128 KiB, and escaping turns one byte into at most five.
constexpr std::size_t kLongestMessage = 25'000;

/// `message` as the tool expects it: UTF-8 (it aborts on anything else), with its own escapes, in the markup of
/// notifications.
std::string Body(std::string_view message) {
  std::string text = ReplaceIllFormedUtf8(message);
  if (text.size() > kLongestMessage) {
    std::size_t end = kLongestMessage;
    while ((text[end] & 0xC0) == 0x80) --end;  // whole characters only
    text.resize(end);
  }
  std::string body;
  for (const char c : text) {
    switch (c) {
      case '\\':
        body += "\\\\";
        break;
      case '&':
        body += "&amp;";
        break;
      case '<':
        body += "&lt;";
        break;
      case '>':
        body += "&gt;";
        break;
      default:
        body += c;
    }
  }
  return body;
}

/// The attributes of a child process that inherits nothing from the host: no open files, no signal handling.
class CleanStart {
 public:
  CleanStart() {
    posix_spawn_file_actions_init(&files);
    posix_spawn_file_actions_addopen(&files, STDIN_FILENO, "/dev/null", O_RDWR, 0);
    posix_spawn_file_actions_adddup2(&files, STDIN_FILENO, STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&files, STDIN_FILENO, STDERR_FILENO);
    posix_spawn_file_actions_addclosefrom_np(&files, STDERR_FILENO + 1);
    posix_spawnattr_init(&signals);
    posix_spawnattr_setflags(&signals, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    sigset_t set;
    sigemptyset(&set);
    posix_spawnattr_setsigmask(&signals, &set);
    sigfillset(&set);
    posix_spawnattr_setsigdefault(&signals, &set);
  }
  ~CleanStart() {
    posix_spawn_file_actions_destroy(&files);
    posix_spawnattr_destroy(&signals);
  }
  CleanStart(const CleanStart&) = delete;
  CleanStart& operator=(const CleanStart&) = delete;

  posix_spawn_file_actions_t files;
  posix_spawnattr_t signals;
};

/// Waits for the tool, which hangs while the desktop does not answer. Kills it after kLongestRunMs, or when the jobs
/// must end.
void Reap(pid_t tool) {
  const FileDescriptor process(static_cast<int>(syscall(SYS_pidfd_open, tool, 0)));
  // Without a descriptor (-1) the end of the tool goes unnoticed, and it is killed at the limit.
  pollfd awaited[] = {{process.get(), POLLIN, 0}, {EndOfJobs(), POLLIN, 0}};
  poll(awaited, std::size(awaited), kLongestRunMs);
  if (awaited[0].revents == 0) kill(tool, SIGKILL);
  while (waitpid(tool, nullptr, 0) < 0 && errno == EINTR) continue;
}

}  // namespace

void Notify(const std::string& title, const std::string& message) {
  bg([summary = title, body = Body(message)]() mutable {
    char name[] = "notify-send";
    char application[] = "--app-name=Varnix";
    char endOfOptions[] = "--";
    char* const arguments[] = {name, application, endOfOptions, summary.data(), body.data(), nullptr};
    const CleanStart start;
    pid_t tool = 0;
    if (posix_spawnp(&tool, name, &start.files, &start.signals, arguments, environ) == 0) Reap(tool);
  });
}
