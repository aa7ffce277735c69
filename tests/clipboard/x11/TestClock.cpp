#include "tests/clipboard/x11/TestClock.h"

#include <atomic>
#include <chrono>

#include "core/Clock.h"

namespace {

std::atomic<std::int64_t> offset = 0;

}  // namespace

void AdvanceClock(std::int64_t milliseconds) { offset += milliseconds; }

std::int64_t SteadyMilliseconds() {
  const auto now = std::chrono::steady_clock::now().time_since_epoch();
  return std::chrono::duration_cast<std::chrono::milliseconds>(now).count() + offset;
}
