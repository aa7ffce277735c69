#include <condition_variable>
#include <mutex>

#include "net/Semaphore.h"

struct Semaphore::Native {
  std::mutex mutex;
  std::condition_variable signalled;
  int signals = 0;
};

Semaphore::Semaphore() : native_(std::make_unique<Native>()) {}
Semaphore::~Semaphore() = default;

void Semaphore::Signal() noexcept {
  const std::lock_guard lock(native_->mutex);
  ++native_->signals;
  native_->signalled.notify_one();
}

bool Semaphore::WaitFor(std::chrono::milliseconds limit) {
  std::unique_lock lock(native_->mutex);
  const bool hasSignal = native_->signalled.wait_for(lock, limit, [this] { return native_->signals > 0; });
  if (hasSignal) --native_->signals;
  return hasSignal;
}
