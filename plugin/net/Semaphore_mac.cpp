#include <dispatch/dispatch.h>

#include <cstdint>
#include <new>

#include "net/Semaphore.h"

struct Semaphore::Native {
  Native() {
    if (semaphore == nullptr) throw std::bad_alloc();
  }
  ~Native() { dispatch_release(semaphore); }

  const dispatch_semaphore_t semaphore = dispatch_semaphore_create(0);
};

Semaphore::Semaphore() : native_(std::make_unique<Native>()) {}
Semaphore::~Semaphore() = default;

void Semaphore::Signal() noexcept { dispatch_semaphore_signal(native_->semaphore); }

bool Semaphore::WaitFor(std::chrono::milliseconds limit) {
  const std::int64_t nanoseconds = std::chrono::nanoseconds(limit).count();
  return dispatch_semaphore_wait(native_->semaphore, dispatch_time(DISPATCH_TIME_NOW, nanoseconds)) == 0;
}
