// The HTTP server on its socket.
#pragma once

#include <memory>
#include <string>

#include "http/Routes.h"

namespace service {

struct ListenAddress {
  std::string host;  ///< name or numeric address, without brackets
  int port = 0;      ///< 0 lets the system choose
};

/// Answers requests from its construction to its destruction, which waits a limited time for requests in progress.
class Server {
 public:
  /// Sets the url of `context`, with the actual port; `context` must outlive the server. Throws std::runtime_error when
  /// it cannot listen on the address.
  Server(const ListenAddress& address, Context& context);
  ~Server();

 private:
  class Listener;
  std::unique_ptr<Listener> listener_;
};

}  // namespace service
