#include "designs/DesignIndexer.h"

#include <stdexcept>

#include "designs/DesignStore.h"

namespace service {

DesignIndexer::DesignIndexer(std::string folder, std::function<void(const std::string&)> log,
                             std::function<void()> changed)
    : folder_(std::move(folder)), log_(std::move(log)), changed_(std::move(changed)), thread_([this] { Run(); }) {}

DesignIndexer::~DesignIndexer() {
  Stop();
  thread_.join();
}

void DesignIndexer::Wake() {
  const std::lock_guard lock(mutex_);
  isWoken_ = true;
  woken_.notify_one();
}

bool DesignIndexer::Await(std::chrono::milliseconds longest) {
  std::unique_lock lock(mutex_);
  const auto rests = [this] { return !isWoken_ && !isAtWork_; };
  rested_.wait_for(lock, longest, [&] { return stop_ || rests(); });
  return rests() && !hasFailed_;
}

void DesignIndexer::Stop() {
  const std::lock_guard lock(mutex_);
  stop_ = true;
  woken_.notify_one();
  rested_.notify_all();
}

void DesignIndexer::Run() {
  std::unique_lock lock(mutex_);
  for (;;) {
    woken_.wait(lock, [this] { return stop_ || isWoken_; });
    if (stop_) return;
    isWoken_ = false;
    isAtWork_ = true;
    lock.unlock();
    const bool isDone = CatchUp();
    lock.lock();
    isAtWork_ = false;
    hasFailed_ = !isDone;
    rested_.notify_all();
  }
}

// False when it fails; the next call of Wake tries again.
bool DesignIndexer::CatchUp() try {
  bool isBusy = false;
  DesignStore(folder_).CatchUp(stop_, [&](const std::string& name) {
    isBusy = true;
    log_("indexing " + name);
  });
  if (isBusy && !stop_) log_("designs are indexed");
  changed_();
  return !stop_;
} catch (const std::exception& error) {
  log_(std::string("designs are not indexed: ") + error.what());
  return false;
}

}  // namespace service
