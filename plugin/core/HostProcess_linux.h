// Good manners of a plug-in with threads of its own in somebody else's process.
#pragma once

#include <csignal>

/// While it lives, threads are made that take none of the host's signals; only faults are left to the host's handlers.
class SignalsBlocked {
 public:
  SignalsBlocked();
  ~SignalsBlocked();
  SignalsBlocked(const SignalsBlocked&) = delete;
  SignalsBlocked& operator=(const SignalsBlocked&) = delete;

 private:
  sigset_t before_;
};

/// The calling thread no longer interrupts the one that wakes it, which may be the host's main thread.
void ScheduleAsBatch();

/// From here on the library that holds `address` stays in memory, even when it is unloaded.
void KeepLoaded(const void* address);
