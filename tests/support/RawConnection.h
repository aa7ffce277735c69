// A connection to a local HTTP server on which a test sends any bytes.
#pragma once

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <cstdint>
#include <cstdlib>
#include <string>

#include "core/FileDescriptor.h"

class RawConnection {
 public:
  /// Connects to "http://127.0.0.1:<port>". Receiving ends when nothing arrives for `patience`, unless that is zero.
  explicit RawConnection(const std::string& url, timeval patience = {}) : socket_(socket(AF_INET, SOCK_STREAM, 0)) {
    fcntl(socket_.get(), F_SETFD, FD_CLOEXEC);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(static_cast<std::uint16_t>(std::stoi(url.substr(url.rfind(':') + 1))));
    if (connect(socket_.get(), reinterpret_cast<sockaddr*>(&address), sizeof address) != 0) std::abort();
    setsockopt(socket_.get(), SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
  }

  /// False once the server has closed the connection.
  bool Send(const std::string& bytes) {
    return send(socket_.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL) == static_cast<ssize_t>(bytes.size());
  }

  /// Ends sending: no more bytes follow.
  void EndSending() { shutdown(socket_.get(), SHUT_WR); }

  /// Receives until `ending` arrives or the server closes the connection.
  std::string Receive(const std::string& ending = "") {
    std::string received;
    char byte;
    while ((ending.empty() || !received.ends_with(ending)) && recv(socket_.get(), &byte, 1, 0) == 1) received += byte;
    return received;
  }

 private:
  FileDescriptor socket_;
};
