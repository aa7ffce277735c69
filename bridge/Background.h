// Work beside FileMaker's main thread.
#pragma once

#include <functional>

/// Runs `job` on the system's shared pool of default priority. Returns at once and never throws; nobody waits for the
/// job, and what it throws is dropped. A job may never run, when the process ends first or no thread can be had: then
/// it is only destroyed. It must own copies of all that it needs. Any thread.
void bg(std::function<void()> job) noexcept;
