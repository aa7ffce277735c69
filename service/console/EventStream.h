// Reports changes to one page, as server-sent events.
#pragma once

#include <array>
#include <atomic>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/steady_timer.hpp>
#include <boost/beast/core/tcp_stream.hpp>
#include <memory>
#include <string>

#include "console/EventHub.h"
#include "http/Routes.h"

namespace service {

/// Uses a thread only while it writes. Exists until the page is closed or reads too slowly, or the service ends. All
/// private members belong to the strand of its socket.
class EventStream : public EventListener, public std::enable_shared_from_this<EventStream> {
 public:
  /// `socket` must have its own strand as executor. `context` must outlive the stream.
  EventStream(boost::asio::ip::tcp::socket socket, Context& context);

  /// Answers the request that asked for the events.
  void Start();

  void Report(Topic topic) override;
  void End() override;

 private:
  using Error = boost::beast::error_code;

  void Await();
  void AwaitSilence();
  void WriteChanges();
  void Write(std::string text);
  void Close();

  boost::beast::tcp_stream stream_;
  boost::asio::steady_timer silence_;
  Context& context_;
  std::array<char, 512> ignored_;
  bool isWriting_ = false;
  std::atomic<unsigned> changes_ = 0;  ///< a bit for each topic not yet sent to the page; set on any thread
  std::string text_;
};

}  // namespace service
