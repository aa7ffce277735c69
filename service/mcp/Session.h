// One client: answers its messages.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>

#include "mcp/Call.h"
#include "mcp/Workers.h"

namespace service::mcp {

struct Method;

class Session {
 public:
  /// `send` is called with each message for the client, without a newline, on any thread.
  Session(const Options& options, std::function<void(const std::string& line)> send);

  /// Accepts one line from the client. Answers at once, or later from another thread if that takes time. One thread
  /// only.
  void Take(std::string_view line);

  /// Answers a line that could not be read.
  void Refuse(const ProtocolError& error);

  /// Stops waiting for FileMaker and finishes everything else. False if that takes too long. Safe on any thread.
  bool End();

 private:
  struct Request;

  void TakeRequest(Incoming incoming);
  void TakeNotification(const Incoming& incoming);
  Request Examine(Incoming incoming) const;
  void Initialize(Request& request);
  void Begin(const Request& request);
  void CarryOut(const Request& request, const std::shared_ptr<Call>& call);
  void Send(const Request& request, Json result);

  const Options options_;
  const std::function<void(const std::string&)> send_;
  bool isInitialized_ = false;  // these two belong to the thread of Take
  std::string agent_ = "unnamed";
  std::mutex mutex_;
  std::map<std::string, std::shared_ptr<Call>> atWork_;  // by the id as JSON
  Workers workers_;                                      // the last member: its threads use the others
};

}  // namespace service::mcp
