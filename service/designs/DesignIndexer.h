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
  /// `log` is called on the thread.
  DesignIndexer(std::string folder, std::function<void(const std::string&)> log);
  ~DesignIndexer();

  /// Something was received or deleted. Returns at once; safe on any thread.
  void Wake();

 private:
  void Run();

  std::string folder_;
  std::function<void(const std::string&)> log_;
  std::atomic<bool> stop_ = false;
  std::mutex mutex_;
  std::condition_variable woken_;
  bool isWoken_ = true;
  std::thread thread_;
};

}  // namespace service
