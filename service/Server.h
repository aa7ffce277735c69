// The HTTP server on its socket.
#pragma once

#include <memory>
#include <string>

#include "Routes.h"

namespace service {

struct ListenAddress {
  std::string host;  ///< name or numeric address, without brackets
  int port = 0;      ///< 0 lets the system choose
};

/// Answers requests from its construction to its destruction, which lets requests at work end within their time.
class Server {
 public:
  /// Throws std::runtime_error when the address cannot be listened on. `context` must outlive the server.
  Server(const ListenAddress& address, Context& context);
  ~Server();

  /// "http://127.0.0.1:8765", with the port that is really used.
  const std::string& url() const { return url_; }

 private:
  class Listener;
  std::unique_ptr<Listener> listener_;
  std::string url_;
};

}  // namespace service
