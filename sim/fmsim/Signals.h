// Ctrl-C and the other requests to stop.
#pragma once

#include <atomic>
#include <chrono>

/// From now on SIGINT, SIGTERM and SIGHUP no longer end the process but are remembered, unless they are ignored. Call
/// it once, before any thread starts.
void CatchSignals();

/// The signal that has come, or 0. SIGTERM and SIGHUP, which end the program, take precedence over SIGINT.
const std::atomic<int>& CaughtSignal();

/// Forgets a SIGINT that has come: it ended only what was being done. Returns whether one had.
bool ForgetInterrupt();

/// Waits until `descriptor` can be read (-1: there is nothing to read), until `deadline`, or until a signal has been
/// caught and not forgotten. Returns whether it can be read.
bool WaitForInput(int descriptor, std::chrono::steady_clock::time_point deadline);
