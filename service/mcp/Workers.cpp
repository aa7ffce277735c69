#include "mcp/Workers.h"

#include <utility>

namespace service::mcp {

Workers::~Workers() {
  {
    const std::lock_guard lock(mutex_);
    stop_ = true;
    begun_.notify_all();
  }
  for (auto& thread : threads_) thread.join();
}

void Workers::Start(std::function<void()> job) {
  const std::lock_guard lock(mutex_);
  jobs_.push_back(std::move(job));
  const std::size_t idle = threads_.size() - atWork_;
  if (jobs_.size() > idle && threads_.size() < mostThreads_) threads_.emplace_back([this] { Run(); });
  begun_.notify_one();
}

bool Workers::AwaitEnd(std::chrono::milliseconds patience) {
  std::unique_lock lock(mutex_);
  return ended_.wait_for(lock, patience, [this] { return jobs_.empty() && atWork_ == 0; });
}

void Workers::Run() {
  std::unique_lock lock(mutex_);
  for (;;) {
    begun_.wait(lock, [this] { return stop_ || !jobs_.empty(); });
    if (jobs_.empty()) return;
    const auto job = std::exchange(jobs_.front(), nullptr);
    jobs_.pop_front();
    ++atWork_;
    lock.unlock();
    job();
    lock.lock();
    --atWork_;
    ended_.notify_all();
  }
}

}  // namespace service::mcp
