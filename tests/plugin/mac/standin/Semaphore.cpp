// Dispatch semaphores. A time is the nanoseconds from now.
#include <dispatch/dispatch.h>

#include <chrono>
#include <cstdint>
#include <semaphore>

#include "plugin/mac/standin/StandIn.h"

struct dispatch_semaphore_s : std::counting_semaphore<> {
  using counting_semaphore::counting_semaphore;
};

dispatch_time_t dispatch_time(dispatch_time_t when, std::int64_t nanoseconds) {
  if (when != DISPATCH_TIME_NOW) StandIn::Misuse("a time that is not from now");
  return static_cast<dispatch_time_t>(nanoseconds);
}

dispatch_semaphore_t dispatch_semaphore_create(long value) {
  const auto semaphore = new dispatch_semaphore_s(value);
  ++StandIn::semaphores;
  return semaphore;
}

long dispatch_semaphore_signal(dispatch_semaphore_t semaphore) { return semaphore->release(), 0; }

long dispatch_semaphore_wait(dispatch_semaphore_t semaphore, dispatch_time_t timeout) {
  return semaphore->try_acquire_for(std::chrono::nanoseconds(timeout)) ? 0 : 1;
}

void dispatch_release(dispatch_semaphore_t object) {
  --StandIn::semaphores;
  delete object;
}
