#include "tests/clipboard/x11/XServer.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

XServer::XServer() {
  int ready[2];
  if (pipe2(ready, O_CLOEXEC) != 0) return;
  constexpr int kReadyFd = 3;
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
  posix_spawn_file_actions_adddup2(&actions, ready[1], kReadyFd);
  const char* arguments[] = {XVFB, "-displayfd", "3", "-terminate", "-nolisten", "tcp", nullptr};
  posix_spawn(&process_, XVFB, &actions, nullptr, const_cast<char**>(arguments), environ);
  posix_spawn_file_actions_destroy(&actions);
  close(ready[1]);

  std::string number;
  for (char c; read(ready[0], &c, 1) == 1 && c != '\n';) number += c;
  close(ready[0]);
  if (!number.empty()) display_ = ":" + number;
}

void XServer::Kill() {
  if (process_ < 0) return;
  kill(process_, SIGKILL);
  waitpid(process_, nullptr, 0);
  process_ = -1;
}

void XServer::Hang() const { kill(process_, SIGSTOP); }
