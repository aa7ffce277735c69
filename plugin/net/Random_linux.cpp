#include <sys/random.h>

#include <chrono>

#include "net/Random.h"

std::uint32_t RandomNumber() noexcept {
  std::uint32_t number = 0;
  if (getrandom(&number, sizeof number, 0) == sizeof number) return number;
  // Refused by a sandbox: for a few bytes there is no other reason.
  return static_cast<std::uint32_t>(std::chrono::steady_clock::now().time_since_epoch().count());
}
