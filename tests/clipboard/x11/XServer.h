// An X server of its own for a test: Xvfb on a free display. It ends when its last client leaves, so that nothing stays
// behind a test that crashes.
#pragma once

#include <sys/types.h>

#include <cstdio>
#include <string>

class XServer {
 public:
  /// Running and ready when made; `display` is empty when it could not be started.
  XServer();
  ~XServer() { Kill(); }
  XServer(const XServer&) = delete;
  XServer& operator=(const XServer&) = delete;

  const std::string& display() const { return display_; }
  /// As when the machine's display crashes: gone when this returns.
  void Kill();
  /// Stops answering, without closing anything.
  void Hang() const;

 private:
  std::FILE* output_;
  pid_t process_ = -1;
  std::string display_;
};
