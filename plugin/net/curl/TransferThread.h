// The thread that runs all transfers and owns their connections and cookies.
#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

#include "core/FileDescriptor.h"
#include "net/curl/CurlTransfer.h"

class TransferThread {
 public:
  /// Initialises libcurl and the libraries it uses. They register their own exit handlers meanwhile, so a static object
  /// of this class is destroyed before they are shut down.
  TransferThread() : hasCurl_(curl_global_init(CURL_GLOBAL_DEFAULT) == CURLE_OK) {}
  ~TransferThread() { Stop(); }
  TransferThread(const TransferThread&) = delete;
  TransferThread& operator=(const TransferThread&) = delete;

  /// Passes the transfer to the thread, which the first transfer starts. If that is impossible, and after Stop, the
  /// transfer fails before this returns. Any thread.
  void Start(std::unique_ptr<CurlTransfer> transfer);
  /// Cancels all transfers, waits for their completions and ends the thread. Any thread except this one.
  void Stop();

 private:
  /// What the thread has been asked to do during a wait.
  struct Orders {
    bool stop;
    std::vector<std::unique_ptr<CurlTransfer>> transfers;
  };

  const char* StartThread();
  void Run();
  Orders TakeOrders();

  const bool hasCurl_;
  std::mutex mutex_;  // guards what follows
  bool stopping_ = false;
  std::vector<std::unique_ptr<CurlTransfer>> arrived_;
  std::optional<FileDescriptor> wake_;  // an eventfd, created with the thread
  std::thread thread_;
};
