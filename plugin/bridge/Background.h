// Background jobs, off FileMaker's main thread.
#pragma once

#include <atomic>
#include <functional>
#include <memory>

/// Runs `job` on the system's shared pool of default priority. Returns at once and never throws. Nothing waits for the
/// job, and anything that it throws is dropped. If the process ends first, or no thread can be started, the job is
/// destroyed without being run. It must own copies of everything that it needs. Any thread.
void bg(std::function<void()> job) noexcept;

/// To be called when the plug-in is initialised, so that no job runs unloaded code later. On Linux an unload ends all
/// jobs. macOS cannot wait for running jobs, so there the plug-in stays in memory from here on. Main thread.
void PrepareForUnload();

/// Lowers `flag` when the last copy of the result is destroyed. A job that holds one lowers the flag when it ends,
/// even if it throws or never runs. Any thread.
inline std::shared_ptr<void> LoweredAtEnd(std::atomic<bool>& flag) {
  return {&flag, [](void* raised) { static_cast<std::atomic<bool>*>(raised)->exchange(false); }};
}
