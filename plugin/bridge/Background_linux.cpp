// A pool of threads that grows with the work. When the plug-in is unloaded, or the process ends, waiting jobs are
// dropped and the waits of running jobs are aborted.
#include "bridge/Background_linux.h"

#include <sys/eventfd.h>

#include <condition_variable>
#include <deque>
#include <exception>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

#include "bridge/Background.h"
#include "core/FileDescriptor.h"
#include "core/HostProcess_linux.h"
#include "net/Network_linux.h"

namespace {

constexpr std::size_t kMostThreads = 32;

class Pool {
 public:
  Pool() { PrepareTransfers(); }  // first, so that they are destroyed after the pool
  ~Pool() {
    {
      const std::lock_guard lock(mutex_);
      stopping_ = true;
    }
    hasWork_.notify_all();
    eventfd_write(end_.get(), 1);
    StopTransfers();
    for (auto& thread : threads_) thread.join();
  }

  int end() const { return end_.get(); }

  void Add(std::function<void()> job) {
    {
      const std::lock_guard lock(mutex_);
      if (stopping_) return;
      waiting_.push_back(std::move(job));
      if (waiting_.size() > idle_ && threads_.size() < kMostThreads) StartThread();
    }
    hasWork_.notify_one();  // after the lock is released, so that the thread need not wait for it
  }

 private:
  void StartThread() {
    const SignalsBlocked blocked;
    try {
      threads_.emplace_back([this] { Work(); });
    } catch (const std::exception&) {
      if (threads_.empty()) waiting_.clear();  // no thread will run them
    }
  }

  void Work() {
    ScheduleAsBatch();
    std::unique_lock lock(mutex_);
    for (;;) {
      ++idle_;
      hasWork_.wait(lock, [this] { return stopping_ || !waiting_.empty(); });
      --idle_;
      if (stopping_) return;
      std::function<void()> job = std::move(waiting_.front());
      waiting_.pop_front();
      lock.unlock();
      RunDroppingExceptions(job);
      job = nullptr;
      lock.lock();
    }
  }

  static void RunDroppingExceptions(const std::function<void()>& job) {
    try {
      job();
    } catch (...) {  // mostly std::bad_alloc; the job reports its own failures
    }
  }

  const FileDescriptor end_{eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)};
  std::mutex mutex_;  // guards what follows
  std::condition_variable hasWork_;
  std::deque<std::function<void()>> waiting_;
  std::vector<std::thread> threads_;
  std::size_t idle_ = 0;
  bool stopping_ = false;
};

Pool& SharedPool() {
  static const OfThisProcess<Pool> pool;
  return *pool;
}

}  // namespace

int EndOfJobs() { return SharedPool().end(); }

void PrepareForUnload() {}

void bg(std::function<void()> job) noexcept {
  try {
    SharedPool().Add(std::move(job));
  } catch (...) {  // no memory: the job is dropped
  }
}
