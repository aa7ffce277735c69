#include "tests/support/LoopbackServer.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <stdexcept>
#include <utility>

namespace {

constexpr std::chrono::seconds kPatience{10};
constexpr std::string_view kHeadEnd = "\r\n\r\n";

std::size_t ContentLength(std::string_view head) {
  const std::size_t at = head.find("\r\nContent-Length: ");
  return at == head.npos ? 0 : std::strtoull(head.data() + at + 18, nullptr, 10);
}

}  // namespace

LoopbackServer::LoopbackServer(Handler handler)
    : handler_(std::move(handler)), listener_(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t length = sizeof address;
  const auto where = reinterpret_cast<sockaddr*>(&address);
  if (bind(listener_, where, length) != 0 || listen(listener_, 100) != 0 ||
      getsockname(listener_, where, &length) != 0) {
    throw std::runtime_error("no port to listen on");
  }
  port_ = ntohs(address.sin_port);
  acceptor_ = std::thread([this] { Accept(); });
}

LoopbackServer::~LoopbackServer() {
  {
    const std::lock_guard lock(mutex_);
    ending_ = true;
    for (const int socket : open_) shutdown(socket, SHUT_RDWR);
  }
  changed_.notify_all();
  shutdown(listener_, SHUT_RDWR);
  acceptor_.join();
  for (auto& thread : threads_) thread.join();
  close(listener_);
}

void LoopbackServer::Accept() {
  for (;;) {
    const int socket = accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
    const std::lock_guard lock(mutex_);
    if (socket < 0) return;
    open_.push_back(socket);
    if (ending_) shutdown(socket, SHUT_RDWR);
    threads_.emplace_back([this, socket] { Serve(socket); });
  }
}

void LoopbackServer::Serve(int socket) {
  Connection connection(*this, socket);
  handler_(connection);
  const std::lock_guard lock(mutex_);
  std::erase(open_, socket);
  close(socket);
}

std::string LoopbackServer::Url(std::string_view path) const {
  return "http://127.0.0.1:" + std::to_string(port_) + std::string(path);
}

std::vector<std::string> LoopbackServer::Requests() {
  const std::lock_guard lock(mutex_);
  return requests_;
}

std::vector<std::string> LoopbackServer::WaitForRequests(std::size_t count) {
  std::unique_lock lock(mutex_);
  changed_.wait_for(lock, kPatience, [&] { return requests_.size() >= count; });
  return requests_;
}

std::string LoopbackServer::Connection::ReadRequest() {
  std::string& bytes = ahead_;
  for (;;) {
    const std::size_t headEnd = bytes.find(kHeadEnd);
    if (headEnd != bytes.npos) {
      const std::size_t size = headEnd + kHeadEnd.size() + ContentLength(bytes.substr(0, headEnd));
      if (bytes.size() >= size) {
        std::string request = bytes.substr(0, size);
        bytes.erase(0, size);
        const std::lock_guard lock(server_.mutex_);
        server_.requests_.push_back(request);
        server_.changed_.notify_all();
        return request;
      }
    }
    char buffer[65536];
    const ssize_t count = recv(socket_, buffer, sizeof buffer, 0);
    if (count <= 0) return "";
    bytes.append(buffer, static_cast<std::size_t>(count));
  }
}

bool LoopbackServer::Connection::SkipRequest() {
  std::string head;
  std::string buffer(1 << 20, '\0');
  for (std::size_t received = 0, size = SIZE_MAX; received < size;) {
    const ssize_t count = recv(socket_, buffer.data(), buffer.size(), 0);
    if (count <= 0) return false;
    received += static_cast<std::size_t>(count);
    if (size != SIZE_MAX) continue;
    head.append(buffer, 0, static_cast<std::size_t>(count));
    const std::size_t headEnd = head.find(kHeadEnd);
    if (headEnd != head.npos) size = headEnd + kHeadEnd.size() + ContentLength(head.substr(0, headEnd));
  }
  return true;
}

bool LoopbackServer::Connection::Send(std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t count = send(socket_, bytes.data(), bytes.size(), MSG_NOSIGNAL);
    if (count <= 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(count));
  }
  return true;
}

void LoopbackServer::Connection::WaitForEnd() {
  char ignored[4096];
  while (recv(socket_, ignored, sizeof ignored, 0) > 0) {
  }
}

bool LoopbackServer::Connection::Sleep(std::chrono::milliseconds time) {
  std::unique_lock lock(server_.mutex_);
  return !server_.changed_.wait_for(lock, time, [this] { return server_.ending_; });
}

void NeverAnswer(LoopbackServer::Connection& connection) {
  connection.ReadRequest();
  connection.WaitForEnd();
}

LoopbackServer::Handler Answering(std::function<CannedAnswer(const std::string& request)> answer) {
  return [answer = std::move(answer)](LoopbackServer::Connection& connection) {
    for (std::string request = connection.ReadRequest(); !request.empty(); request = connection.ReadRequest()) {
      const CannedAnswer reply = answer(request);
      connection.Send("HTTP/1.1 " + std::to_string(reply.status) + " Told\r\nContent-Length: " +
                      std::to_string(reply.body.size()) + "\r\n" + reply.headers + "\r\n" + reply.body);
    }
  };
}

std::string RequestLine(const std::string& request) { return request.substr(0, request.find(" HTTP/1.1\r\n")); }

std::string RequestBody(const std::string& request) { return request.substr(request.find(kHeadEnd) + kHeadEnd.size()); }
