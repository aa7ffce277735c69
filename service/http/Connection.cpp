#include "http/Connection.h"

#include <sys/socket.h>

#include <algorithm>
#include <boost/asio/dispatch.hpp>
#include <boost/asio/write.hpp>
#include <boost/beast/http/file_body.hpp>
#include <boost/beast/http/read.hpp>
#include <boost/beast/http/string_body.hpp>
#include <boost/beast/http/write.hpp>
#include <cctype>
#include <cerrno>
#include <exception>
#include <filesystem>
#include <limits>
#include <stdexcept>

#include "console/EventStream.h"
#include "http/HttpError.h"
#include "http/Routes.h"

namespace service {
namespace {

namespace asio = boost::asio;
namespace http = boost::beast::http;

constexpr char kContinue[] = "HTTP/1.1 100 Continue\r\n\r\n";

bool IsInHead(KeyPlace place) {
  return place == KeyPlace::kPath || place == KeyPlace::kQuery || place == KeyPlace::kHeader;
}

void CopyHead(const http::request<http::buffer_body>& head, Request& request) {
  request.method = std::string(head.method_string());
  const auto target = head.target();
  SetTarget(request, {target.data(), target.size()});
  for (const auto& field : head) {
    std::string name(field.name_string());
    for (char& letter : name) letter = static_cast<char>(std::tolower(static_cast<unsigned char>(letter)));
    request.headers.emplace(std::move(name), std::string(field.value()));
  }
}

Response ErrorAnswer(int status, const std::string& message) { return JsonAnswer({{"error", message}}, status); }

Response AnswerToException() {
  try {
    throw;
  } catch (const HttpError& error) {
    return ErrorAnswer(error.status(), error.what());
  } catch (const StoreGone& error) {
    return ErrorAnswer(503, error.what());
  } catch (const std::exception& error) {
    return ErrorAnswer(500, std::string("the service failed: ") + error.what());
  }
}

// A client that closes its connection, or only its own direction, sends the end of its bytes.
bool IsOpen(asio::ip::tcp::socket& socket) {
  char byte = 0;
  const auto count = recv(socket.native_handle(), &byte, 1, MSG_PEEK | MSG_DONTWAIT);
  return count > 0 || (count < 0 && (errno == EAGAIN || errno == EINTR));
}

}  // namespace

Connection::Connection(asio::ip::tcp::socket socket, Context& context)
    : stream_(std::move(socket)), context_(context), end_(std::chrono::steady_clock::now() + context.times.request) {
  parser_.header_limit(kHeadBytes);
  parser_.body_limit(std::numeric_limits<std::uint64_t>::max());  // Body has its own
}

void Connection::Start() {
  asio::dispatch(stream_.get_executor(), [self = shared_from_this()] { self->ReadHead(); });
}

void Connection::CloseUnlessAtWork() {
  asio::dispatch(stream_.get_executor(), [self = shared_from_this()] {
    if (!self->atWork_) self->stream_.close();
  });
}

template <class Step>
void Connection::Try(Step step) {
  try {
    step();
  } catch (...) {
    Send(AnswerToException());
  }
}

void Connection::SetTimeout(std::chrono::steady_clock::duration silence) {
  stream_.expires_at(std::min(end_, std::chrono::steady_clock::now() + silence));
}

void Connection::ReadHead() {
  SetTimeout(context_.times.head);
  http::async_read_header(stream_, buffer_, parser_,
                          [self = shared_from_this()](Error error, std::size_t) { self->AcceptHead(error); });
}

void Connection::AcceptHead(Error error) {
  Try([&] {
    if (error == http::error::header_limit || error == http::error::buffer_overflow) {
      throw HttpError(431, "the headers are larger than " + std::to_string(kHeadBytes) + " bytes");
    }
    if (error.category() == make_error_code(http::error::bad_method).category() &&
        error != http::error::end_of_stream && error != http::error::partial_message) {
      throw HttpError(400, "not an HTTP request");
    }
    if (error) return stream_.close();
    CopyHead(parser_.get(), request_);
    route_ = &Admit(context_, request_);
    body_.emplace(context_.limit, route_->takesFile ? context_.limit.bytes() : kSmallBodyBytes);
    body_->Announce(parser_.content_length().value_or(0));
    if (route_->takesFile) buffer_.reserve(kSmallBodyBytes);  // or it reads 512 bytes at a time
    atWork_ = context_.access.IsOpen() ? route_->key != KeyPlace::kConsole : IsInHead(route_->key);
    if (request_.Header("expect") != "100-continue" || parser_.is_done()) return ReadBody();
    asio::async_write(stream_, asio::buffer(kContinue, sizeof kContinue - 1),
                      [self = shared_from_this()](Error failure, std::size_t) {
                        if (!failure) self->ReadBody();
                      });
  });
}

void Connection::ReadBody() {
  if (parser_.is_done()) return AnswerRequest();
  parser_.get().body().data = piece_.data();
  parser_.get().body().size = piece_.size();
  SetTimeout(context_.times.silence);
  http::async_read_some(stream_, buffer_, parser_,
                        [self = shared_from_this()](Error error, std::size_t) { self->AcceptBody(error); });
}

void Connection::AcceptBody(Error error) {
  Try([&] {
    if (error && error != http::error::need_buffer) return stream_.close();
    body_->Append({piece_.data(), piece_.size() - parser_.get().body().size});
    if (!atWork_ && (parser_.is_done() || body_->bytes().size() >= kSmallBodyBytes)) {
      if (route_->key == KeyPlace::kBody && !ShowsKey(context_, body_->bytes()))
        throw HttpError(401, "the account key is wrong");
      atWork_ = true;
    }
    ReadBody();
  });
}

void Connection::AnswerRequest() {
  Try([&] {
    atWork_ = true;
    request_.body = body_->bytes();
    request_.isWanted = [this, start = std::chrono::steady_clock::now()] {
      return std::chrono::steady_clock::now() - start < context_.times.patience || IsOpen(stream_.socket());
    };
    Response response = route_->answer(context_, request_);
    if (!response.file.empty()) return SendFile(response);
    if (!response.streamsEvents) return Send(std::move(response));
    std::make_shared<EventStream>(stream_.release_socket(), context_)->Start();
  });
}

void Connection::Send(Response response) {
  const auto message = std::make_shared<http::response<http::string_body>>();
  message->body() = std::move(response.body);
  Write(message, response);
}

void Connection::SendFile(const Response& response) {
  const auto message = std::make_shared<http::response<http::file_body>>();
  Error error;
  message->body().open(response.file.c_str(), boost::beast::file_mode::scan, error);
  std::filesystem::remove(response.file);
  if (error) throw std::runtime_error(response.file + " cannot be read: " + error.message());
  Write(message, response);
}

template <class Message>
void Connection::Write(std::shared_ptr<Message> message, const Response& response) {
  body_.reset();
  message->result(static_cast<unsigned int>(response.status));
  message->version(parser_.get().version() == 10 ? 10 : 11);
  message->set(http::field::content_type, response.contentType);
  message->set("X-Content-Type-Options", "nosniff");
  for (const auto& [name, value] : response.headers) message->set(name, value);
  message->keep_alive(false);
  message->prepare_payload();
  if (response.file.empty()) {
    SetTimeout(context_.times.request);
  } else {
    stream_.expires_after(context_.times.download);
  }
  http::async_write(stream_, *message, [self = shared_from_this(), message](Error error, std::size_t) {
    self->atWork_ = false;
    if (error) return self->stream_.close();
    self->Linger();
  });
}

// Closing a connection with unread bytes resets it, and the sender may lose the answer.
void Connection::Linger() {
  Error error;
  stream_.socket().shutdown(asio::socket_base::shutdown_send, error);
  if (error || parser_.is_done()) return stream_.close();
  stream_.expires_at(std::chrono::steady_clock::now() + context_.times.linger);
  struct Discard {
    std::shared_ptr<Connection> self;
    void operator()(Error failure, std::size_t) {
      auto& stream = self->stream_;
      if (failure) return stream.close();
      const auto piece = asio::buffer(self->piece_);
      stream.async_read_some(piece, std::move(*this));
    }
  };
  Discard{shared_from_this()}(Error(), 0);
}

}  // namespace service
