// One connection: reads a request within its limits, answers it, and closes the connection.
#pragma once

#include <array>
#include <atomic>
#include <boost/asio/ip/tcp.hpp>
#include <boost/beast/core/flat_buffer.hpp>
#include <boost/beast/core/tcp_stream.hpp>
#include <boost/beast/http/buffer_body.hpp>
#include <boost/beast/http/message.hpp>
#include <boost/beast/http/parser.hpp>
#include <chrono>
#include <memory>
#include <optional>

#include "http/Limits.h"
#include "http/Router.h"

namespace service {

/// Exists as long as one of its operations is in progress. All private members belong to the strand of its socket.
class Connection : public std::enable_shared_from_this<Connection> {
 public:
  /// `socket` must have its own strand as executor. `context` must outlive the connection.
  Connection(boost::asio::ip::tcp::socket socket, Context& context);

  void Start();

  /// Closes the connection unless it is at work. Any thread.
  void CloseUnlessAtWork();

  /// True once the client has shown the right key or needs none, until its answer is sent. Any thread.
  bool IsAtWork() const { return atWork_; }

 private:
  using Error = boost::beast::error_code;

  void ReadHead();
  void AcceptHead(Error error);
  void ReadBody();
  void AcceptBody(Error error);
  void AnswerRequest();
  void Send(Response response);
  void SendFile(const Response& response);
  template <class Message>
  void Write(std::shared_ptr<Message> message, const Response& response);
  void Linger();
  void SetTimeout(std::chrono::steady_clock::duration silence);

  /// Calls `step`. If it throws, sends the answer for that exception.
  template <class Step>
  void Try(Step step);

  boost::beast::tcp_stream stream_;
  Context& context_;
  const std::chrono::steady_clock::time_point end_;
  std::atomic<bool> atWork_ = false;
  boost::beast::flat_buffer buffer_{kHeadBytes + kSmallBodyBytes};
  boost::beast::http::request_parser<boost::beast::http::buffer_body> parser_;
  Request request_;
  const Route* route_ = nullptr;
  std::optional<Body> body_;
  std::array<char, kSmallBodyBytes> piece_;
};

}  // namespace service
