// An X server of its own for a test: Xvfb on a free display. It ends when its last client leaves, so that nothing stays
// behind a test that crashes.
#pragma once

#include <signal.h>

#include <cstdio>
#include <string>

class XServer {
 public:
  /// Ready when made; `display` is empty when it does not start.
  explicit XServer(const std::string& options = "") {
    // The shell prints its process number, which the server takes over.
    output_ = popen(("echo $$; exec " XVFB " -displayfd 1 -terminate " + options + " 2>/dev/null").c_str(), "re");
    int number = 0;
    if (std::fscanf(output_, "%d %d", &process_, &number) == 2) display_ = ":" + std::to_string(number);
  }
  /// As when the machine's display crashes: gone when this returns.
  ~XServer() {
    if (process_ > 0) kill(process_, SIGKILL);
    pclose(output_);
  }

  const std::string& display() const { return display_; }

 private:
  std::FILE* output_;
  pid_t process_ = -1;
  std::string display_;
};
