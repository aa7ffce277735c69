// An owned file descriptor of the system.
#pragma once

#include <unistd.h>

class FileDescriptor {
 public:
  /// Owns `fd`, the result of open() or a similar call; -1 for none.
  explicit FileDescriptor(int fd) : fd_(fd) {}
  ~FileDescriptor() {
    if (IsOpen()) close(fd_);
  }
  FileDescriptor(const FileDescriptor&) = delete;
  FileDescriptor& operator=(const FileDescriptor&) = delete;

  bool IsOpen() const { return fd_ >= 0; }
  int get() const { return fd_; }

 private:
  const int fd_;
};
