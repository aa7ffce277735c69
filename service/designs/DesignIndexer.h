// Indexes designs as they are received.
#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <string>
#include <thread>

namespace service {

/// Works on its own thread with its own database connections, from construction to destruction.
class DesignIndexer {
 public:
  /// Calls on that thread: `log` with a line about each design that it indexes and about failures; `changed` after each
  /// check for received or deleted records.
  DesignIndexer(std::string folder, std::function<void(const std::string&)> log, std::function<void()> changed);
  ~DesignIndexer();

  /// To be called when something was received or deleted. Returns at once; safe on any thread.
  void Wake();

  /// Waits until everything received before the last call of Wake is indexed, for at most `longest`. False when it is
  /// not. Safe on any thread.
  bool Await(std::chrono::milliseconds longest);

  /// Ends the work after the current design, and every wait for it. Returns at once; safe on any thread.
  void Stop();

 private:
  void Run();
  bool CatchUp();

  std::string folder_;
  std::function<void(const std::string&)> log_;
  std::function<void()> changed_;
  std::atomic<bool> stop_ = false;
  std::mutex mutex_;
  std::condition_variable woken_, rested_;
  bool isWoken_ = true, isAtWork_ = false, hasFailed_ = false;
  std::thread thread_;
};

}  // namespace service
