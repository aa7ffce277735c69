// Dispatch semaphores. A time is the nanoseconds from now.
#include <dispatch/dispatch.h>

#include <chrono>
#include <condition_variable>
#include <mutex>

#include "plugin/mac/standin/StandIn.h"

struct dispatch_semaphore_s {
  std::mutex mutex;
  std::condition_variable signalled;
  long value;
};

dispatch_time_t dispatch_time(dispatch_time_t when, std::int64_t nanoseconds) {
  if (when != DISPATCH_TIME_NOW) StandIn::Misuse("a time that is not from now");
  return static_cast<dispatch_time_t>(nanoseconds);
}

dispatch_semaphore_t dispatch_semaphore_create(long value) {
  ++StandIn::semaphores;
  return new dispatch_semaphore_s{.mutex = {}, .signalled = {}, .value = value};
}

long dispatch_semaphore_signal(dispatch_semaphore_t semaphore) {
  const std::lock_guard lock(semaphore->mutex);
  ++semaphore->value;
  semaphore->signalled.notify_one();
  return 0;
}

long dispatch_semaphore_wait(dispatch_semaphore_t semaphore, dispatch_time_t timeout) {
  std::unique_lock lock(semaphore->mutex);
  const auto isSignalled = [semaphore] { return semaphore->value > 0; };
  if (!semaphore->signalled.wait_for(lock, std::chrono::nanoseconds(timeout), isSignalled)) return 1;
  --semaphore->value;
  return 0;
}

void dispatch_release(dispatch_semaphore_t object) {
  --StandIn::semaphores;
  delete object;
}
