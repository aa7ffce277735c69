// A request in progress, as tools and resources see it.
#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <stdexcept>
#include <string>

#include "Options.h"
#include "mcp/Protocol.h"

namespace service::mcp {

/// The client no longer wants the answer.
class Cancelled : public std::runtime_error {
 public:
  Cancelled() : std::runtime_error("cancelled") {}
};

class Call {
 public:
  /// `token` identifies the client's progress notifications; null: it wants none. `send` must be safe on any thread.
  Call(Options options, Value token, std::function<void(const std::string& line)> send)
      : options_(std::move(options)), token_(std::move(token)), send_(std::move(send)) {}

  /// The options of the command line, with the name of the client as `agent`.
  const Options& options() const { return options_; }

  /// Waits for `duration`. Throws Cancelled as soon as the client cancels; returns false as soon as the session ends.
  bool Pause(std::chrono::milliseconds duration);

  /// Throws Cancelled when the client has cancelled.
  void Check();

  /// Sends a progress notification if the client has asked for them. `progress` must grow from call to call.
  void ShowProgress(double progress, const std::string& message);

  /// These are safe on any thread.
  void Cancel();
  void EndPauses();
  bool IsCancelled();

 private:
  const Options options_;
  const Value token_;
  const std::function<void(const std::string&)> send_;
  std::mutex mutex_;
  std::condition_variable changed_;
  bool isCancelled_ = false;
  bool isEnding_ = false;
};

}  // namespace service::mcp
