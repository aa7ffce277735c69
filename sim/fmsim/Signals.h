// Ctrl-C and the other requests to stop.
#pragma once

#include <atomic>
#include <chrono>

/// From now on SIGINT, SIGTERM and SIGHUP no longer end the process but are remembered, unless they are ignored. To be
/// called once, before any thread starts.
void CatchSignals();

/// The signal that was caught, or 0. SIGTERM and SIGHUP, which end the program, take precedence over SIGINT.
const std::atomic<int>& CaughtSignal();

/// Forgets a caught SIGINT, which ends only the current activity. Returns whether there was one.
bool ForgetInterrupt();

/// Waits until `descriptor` can be read (-1: there is nothing to read), until `deadline`, or until a signal has been
/// caught and not forgotten. Returns whether it can be read.
bool WaitForInput(int descriptor, std::chrono::steady_clock::time_point deadline);
