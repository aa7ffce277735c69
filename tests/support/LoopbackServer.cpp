#include "support/LoopbackServer.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <utility>

namespace {

constexpr std::chrono::seconds kPatience{10};
constexpr std::string_view kHeadEnd = "\r\n\r\n";

/// The size of the request at the start of `bytes`; SIZE_MAX while its head is incomplete.
std::size_t RequestSize(const std::string& bytes) {
  const std::size_t headEnd = bytes.find(kHeadEnd), length = bytes.find("\r\nContent-Length: ");
  if (headEnd == bytes.npos) return SIZE_MAX;
  return headEnd + kHeadEnd.size() + (length < headEnd ? std::stoul(bytes.substr(length + 18, 20)) : 0);
}

void KeepFromChildren(int descriptor) { fcntl(descriptor, F_SETFD, FD_CLOEXEC); }

}  // namespace

LoopbackServer::LoopbackServer(Handler handler)
    : handler_(std::move(handler)), listener_(socket(AF_INET, SOCK_STREAM, 0)) {
  if (pipe(stop_) != 0) std::abort();
  for (const int descriptor : {listener_, stop_[0], stop_[1]}) KeepFromChildren(descriptor);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t length = sizeof address;
  const auto where = reinterpret_cast<sockaddr*>(&address);
  bind(listener_, where, length);
  listen(listener_, 100);
  getsockname(listener_, where, &length);
  port_ = ntohs(address.sin_port);
  acceptor_ = std::thread([this] { Accept(); });
}

LoopbackServer::~LoopbackServer() {
  close(stop_[1]);
  acceptor_.join();
  close(stop_[0]);
  {
    const std::lock_guard lock(mutex_);
    ending_ = true;
  }
  changed_.notify_all();
  for (auto& connection : connections_) {
    shutdown(connection.socket_, SHUT_RDWR);
    connection.thread_.join();
    close(connection.socket_);
  }
  close(listener_);
}

void LoopbackServer::Accept() {
  for (;;) {
    pollfd events[] = {{listener_, POLLIN, 0}, {stop_[0], POLLIN, 0}};  // a listener cannot be shut down on macOS
    poll(events, 2, -1);
    if (events[1].revents != 0) return;
    if (events[0].revents == 0) continue;
    const int socket = accept(listener_, nullptr, nullptr);
    if (socket < 0) continue;  // the client has gone, or a test exhausts the descriptors
    KeepFromChildren(socket);
    Connection& connection = connections_.emplace_back(*this, socket);
    connection.thread_ = std::thread([this, &connection] {
      handler_(connection);
      shutdown(connection.socket_, SHUT_RDWR);
    });
  }
}

std::string LoopbackServer::Url(std::string_view path) const {
  return "http://127.0.0.1:" + std::to_string(port_) + std::string(path);
}

std::vector<std::string> LoopbackServer::WaitForRequests(std::size_t count) {
  std::unique_lock lock(mutex_);
  changed_.wait_for(lock, kPatience, [&] { return requests_.size() >= count; });
  return requests_;
}

bool LoopbackServer::Connection::Receive() {
  char buffer[1 << 18];
  const ssize_t count = recv(socket_, buffer, sizeof buffer, 0);
  if (count > 0) ahead_.append(buffer, static_cast<std::size_t>(count));
  return count > 0;
}

std::string LoopbackServer::Connection::ReadRequest() {
  while (RequestSize(ahead_) > ahead_.size()) {
    if (!Receive()) return "";
  }
  std::string request = ahead_.substr(0, RequestSize(ahead_));
  ahead_.erase(0, request.size());
  const std::lock_guard lock(server_.mutex_);
  server_.requests_.push_back(request);
  server_.changed_.notify_all();
  return request;
}

bool LoopbackServer::Connection::SkipRequest() {
  std::size_t left = 0;
  while ((left = RequestSize(ahead_)) == SIZE_MAX) {
    if (!Receive()) return false;
  }
  while (ahead_.size() < left) {
    left -= ahead_.size();
    ahead_.clear();
    if (!Receive()) return false;
  }
  ahead_.erase(0, left);
  return true;
}

bool LoopbackServer::Connection::Send(std::string_view bytes) {
  return send(socket_, bytes.data(), bytes.size(), MSG_NOSIGNAL) == static_cast<ssize_t>(bytes.size());
}

void LoopbackServer::Connection::WaitForEnd() {
  while (Receive()) continue;
}

bool LoopbackServer::Connection::Sleep(std::chrono::milliseconds time) {
  std::unique_lock lock(server_.mutex_);
  return !server_.changed_.wait_for(lock, time, [this] { return server_.ending_; });
}

void NeverAnswer(LoopbackServer::Connection& connection) {
  connection.ReadRequest();
  connection.WaitForEnd();
}

void Drip(LoopbackServer::Connection& connection) {
  connection.ReadRequest();
  connection.Send("HTTP/1.1 200 OK\r\n\r\n");
  while (connection.Sleep(std::chrono::milliseconds(1)) && connection.Send("x")) continue;
}

LoopbackServer::Handler Sending(std::string bytes) {
  return [bytes = std::move(bytes)](LoopbackServer::Connection& connection) {
    connection.ReadRequest();
    connection.Send(bytes);
  };
}

std::string WholeAnswer(const std::string& head, const std::string& body) {
  return "HTTP/1.1 " + head + "\r\nContent-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body;
}

LoopbackServer::Handler Answering(std::function<CannedAnswer(const std::string& request)> answer) {
  return [answer = std::move(answer)](LoopbackServer::Connection& connection) {
    for (std::string request = connection.ReadRequest(); !request.empty(); request = connection.ReadRequest()) {
      const CannedAnswer reply = answer(request);
      connection.Send("HTTP/1.1 " + std::to_string(reply.status) + " Answer\r\nContent-Length: " +
                      std::to_string(reply.body.size()) + "\r\n" + reply.headers + "\r\n" + reply.body);
    }
  };
}

std::string RequestLine(const std::string& request) { return request.substr(0, request.find(" HTTP/1.1\r\n")); }

std::string RequestBody(const std::string& request) { return request.substr(request.find(kHeadEnd) + kHeadEnd.size()); }
