// Indexes designs as they come in.
#pragma once

#include <atomic>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <string>
#include <thread>

namespace service {

/// Works on a thread of its own with its own database connections, from construction to destruction.
class DesignIndexer {
 public:
  /// Called on the thread: `log` when a design is indexed, `changed` after each look at what was received or deleted.
  DesignIndexer(std::string folder, std::function<void(const std::string&)> log, std::function<void()> changed);
  ~DesignIndexer();

  /// Something was received or deleted. Returns at once; safe on any thread.
  void Wake();

 private:
  void Run();

  std::string folder_;
  std::function<void(const std::string&)> log_;
  std::function<void()> changed_;
  std::atomic<bool> stop_ = false;
  std::mutex mutex_;
  std::condition_variable woken_;
  bool isWoken_ = true;
  std::thread thread_;
};

}  // namespace service
