// Work beside FileMaker's main thread.
#pragma once

#include <atomic>
#include <functional>
#include <memory>

/// Runs `job` on the system's shared pool of default priority. Returns at once and never throws; nobody waits for the
/// job, and what it throws is dropped. A job may never run, when the process ends first or no thread can be had: then
/// it is only destroyed. It must own copies of all that it needs. Any thread.
void bg(std::function<void()> job) noexcept;

/// Called at initialise, so that an unload leaves no job running code that is gone. On Linux an unload ends all jobs;
/// macOS cannot wait for those that run, so there the plug-in stays in memory from here on.
void PrepareForUnload();

/// Lowers `flag` when the last copy of the result goes: for a job to hold, so that the flag falls at its end, also when
/// the job throws or never runs. Any thread.
inline std::shared_ptr<void> LoweredAtEnd(std::atomic<bool>& flag) {
  return {&flag, [](void* raised) { static_cast<std::atomic<bool>*>(raised)->exchange(false); }};
}
