#include <sys/random.h>

#include <chrono>

#include "net/Random.h"

std::uint32_t RandomNumber() noexcept {
  std::uint32_t number = 0;
  if (getrandom(&number, sizeof number, 0) == sizeof number) return number;
  // A sandbox has refused the call; for a few bytes it cannot fail otherwise.
  return static_cast<std::uint32_t>(std::chrono::steady_clock::now().time_since_epoch().count());
}
