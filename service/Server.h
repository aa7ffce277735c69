// The HTTP server on its socket.
#pragma once

#include <httplib.h>

#include <string>
#include <thread>

#include "Routes.h"

namespace service {

struct ListenAddress {
  std::string host;  ///< name or numeric address, without brackets
  int port = 0;      ///< 0 lets the system choose
};

/// Answers requests from its construction to its destruction, which lets running requests end.
class Server {
 public:
  /// Throws std::runtime_error when the address cannot be listened on. `context` must outlive the server.
  Server(const ListenAddress& address, Context& context);
  ~Server();

  /// "http://127.0.0.1:8765", with the port that is really used.
  const std::string& url() const { return url_; }

 private:
  httplib::Server http_;
  std::string url_;
  std::thread thread_;
};

}  // namespace service
