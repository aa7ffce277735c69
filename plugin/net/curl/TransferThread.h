// The thread that carries out all transfers, with their connections and cookies.
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
  /// Readies libcurl and the libraries below it. They register their own end with the process when they are readied, so
  /// a static object of this class ends before them.
  TransferThread() : hasCurl_(curl_global_init(CURL_GLOBAL_DEFAULT) == CURLE_OK) {}
  ~TransferThread() { Stop(); }
  TransferThread(const TransferThread&) = delete;
  TransferThread& operator=(const TransferThread&) = delete;

  /// Hands the transfer over; the first one starts the thread. Where that fails, and after Stop, the transfer fails
  /// before this returns.
  void Start(std::unique_ptr<CurlTransfer> transfer);
  /// Cuts all transfers short, waits for their completions and ends the thread.
  void Stop();

 private:
  /// What the thread takes on after a wait.
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
  std::optional<FileDescriptor> wake_;  // an eventfd, once there is a thread
  std::thread thread_;
};
