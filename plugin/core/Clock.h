// The clock behind every throttle.
#pragma once

#include <cstdint>

/// Whole milliseconds of the monotonic clock, truncated. Safe on any thread; tests define their own.
std::int64_t SteadyMilliseconds();
