#include "tests/clipboard/x11/XServer.h"

#include <signal.h>

XServer::XServer() {
  // The shell tells its process, which the server takes over.
  output_ = popen("echo $$; exec " XVFB " -displayfd 1 -terminate -nolisten tcp 2>/dev/null", "re");
  int number = 0;
  if (output_ != nullptr && std::fscanf(output_, "%d %d", &process_, &number) == 2) {
    display_ = ":" + std::to_string(number);
  }
}

void XServer::Kill() {
  if (output_ == nullptr) return;
  if (process_ > 0) kill(process_, SIGKILL);
  pclose(output_);
  output_ = nullptr;
}

void XServer::Hang() const { kill(process_, SIGSTOP); }
