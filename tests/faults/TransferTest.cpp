// Out of memory on the thread of the transfers, which nobody catches for it.
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <new>
#include <string>
#include <thread>

#include "net/Network.h"
#include "tests/faults/Allocations.h"

namespace {

constexpr char kBody[] = "an answer that is too long for a string to hold without memory of its own";

/// A server that needs no memory while it serves.
class Server {
 public:
  Server() {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    bind(listener_, reinterpret_cast<sockaddr*>(&address), size);
    listen(listener_, 8);
    getsockname(listener_, reinterpret_cast<sockaddr*>(&address), &size);
    url = "http://127.0.0.1:" + std::to_string(ntohs(address.sin_port)) + "/";
    thread_ = std::thread([this] { Serve(); });
  }
  ~Server() {
    shutdown(listener_, SHUT_RDWR);
    thread_.join();
    close(listener_);
  }

  std::string url;

 private:
  void Serve() const {
    char bytes[4096];
    for (int socket = accept(listener_, nullptr, nullptr); socket >= 0; socket = accept(listener_, nullptr, nullptr)) {
      constexpr char kHead[] = "HTTP/1.1 200 OK\r\nConnection: close\r\n\r\n";
      if (recv(socket, bytes, sizeof bytes, 0) > 0) {
        send(socket, kHead, sizeof kHead - 1, MSG_NOSIGNAL);
        send(socket, kBody, sizeof kBody - 1, MSG_NOSIGNAL);
      }
      close(socket);
    }
  }

  const int listener_ = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  std::thread thread_;
};

TEST(Transfers, OutliveEveryAllocationThatFails) {
  const Server server;
  bool failed = true;
  int failures = 0;
  for (std::size_t after = 0; failed; ++after) {
    SCOPED_TRACE(after);
    std::string response, error;
    allocations::FailAfter(after);
    bool sent = false;
    try {
      sent = Network::Get(server.url, response, error);
    } catch (const std::bad_alloc&) {  // on the caller's side
      error = "ERROR: caught";
    }
    failed = !allocations::TakeBack();
    failures += failed;
    EXPECT_TRUE(sent ? response == kBody : error.starts_with("ERROR: ") && error.size() > 7) << response << error;
    EXPECT_TRUE(Network::Get(server.url, response, error)) << error;
    EXPECT_EQ(response, kBody);
  }
  EXPECT_GT(failures, 5);
}

}  // namespace
