// A semaphore whose timed wait follows the monotonic clock. On macOS, the standard library's timed waits follow the
// wall clock, which people and time servers change, and include the time that the machine sleeps.
#pragma once

#include <chrono>
#include <memory>

/// Starts at 0. Safe on any thread.
class Semaphore {
 public:
  /// Throws std::bad_alloc.
  Semaphore();
  ~Semaphore();

  /// Lets one wait succeed, whether it has begun or not.
  void Signal() noexcept;
  /// Blocks until there has been a signal; false when none came within `limit`.
  bool WaitFor(std::chrono::milliseconds limit);

 private:
  struct Native;
  const std::unique_ptr<Native> native_;
};
