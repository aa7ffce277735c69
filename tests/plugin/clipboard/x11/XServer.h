// An X server of its own for a test: Xvfb on a free display. It ends when its last client leaves, so that nothing stays
// behind a test that crashes.
#pragma once

#include <signal.h>

#include <cstdio>
#include <string>

class XServer {
 public:
  /// Running and ready when made; `display` is empty when it could not be started.
  explicit XServer(const std::string& options = "") {
    // The shell tells its process, which the server takes over.
    const std::string command = "echo $$; exec " XVFB " -displayfd 1 -terminate -nolisten tcp " + options;
    output_ = popen((command + " 2>/dev/null").c_str(), "re");
    int number = 0;
    if (std::fscanf(output_, "%d %d", &process_, &number) == 2) display_ = ":" + std::to_string(number);
  }
  ~XServer() { Kill(); }

  const std::string& display() const { return display_; }
  /// As when the machine's display crashes: gone when this returns.
  void Kill() {
    if (output_ == nullptr) return;
    if (process_ > 0) kill(process_, SIGKILL);
    pclose(output_);
    output_ = nullptr;
  }
  /// Stops answering, without closing anything.
  void Hang() const { kill(process_, SIGSTOP); }

 private:
  std::FILE* output_;
  pid_t process_ = -1;
  std::string display_;
};
