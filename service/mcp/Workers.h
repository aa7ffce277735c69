// Threads for requests that take time.
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace service::mcp {

class Workers {
 public:
  explicit Workers(std::size_t mostThreads) : mostThreads_(mostThreads) {}

  /// Waits for all jobs.
  ~Workers();

  /// Runs `job` on a thread as soon as one is free. It must not throw.
  void Start(std::function<void()> job);

  /// Waits until all jobs are done, for at most `patience`. False if that was not long enough.
  bool AwaitEnd(std::chrono::milliseconds patience);

 private:
  void Run();

  const std::size_t mostThreads_;
  std::mutex mutex_;
  std::condition_variable begun_, ended_;
  std::deque<std::function<void()>> jobs_;
  std::size_t atWork_ = 0;
  bool stop_ = false;
  std::vector<std::thread> threads_;
};

}  // namespace service::mcp
