// Preloaded into the programs under test, in place of the standard library's clocks: a steady clock that runs
// $STEADY_SPEED times as fast, and a system clock that is $SYSTEM_DAYS_AHEAD. Neither makes a transfer time out
// earlier: libcurl asks the system itself, and so do waits on condition variables, for which the fast clock only gives
// a later deadline.
#include <chrono>
#include <cstdlib>
#include <ctime>

namespace {

std::chrono::nanoseconds Time(clockid_t clock) {
  timespec now{};
  clock_gettime(clock, &now);
  return std::chrono::seconds(now.tv_sec) + std::chrono::nanoseconds(now.tv_nsec);
}

int Setting(const char* name, int otherwise) {
  const char* value = std::getenv(name);
  return value == nullptr ? otherwise : std::atoi(value);
}

}  // namespace

std::chrono::steady_clock::time_point std::chrono::steady_clock::now() noexcept {
  static const int speed = Setting("STEADY_SPEED", 1);
  static const std::chrono::nanoseconds start = Time(CLOCK_MONOTONIC);
  return time_point(start + speed * (Time(CLOCK_MONOTONIC) - start));
}

std::chrono::system_clock::time_point std::chrono::system_clock::now() noexcept {
  static const std::chrono::hours ahead(24 * Setting("SYSTEM_DAYS_AHEAD", 0));
  return time_point(Time(CLOCK_REALTIME) + ahead);
}
