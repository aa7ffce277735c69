// A TCP server on the loopback interface with a handler for each kind of misbehaviour. It records requests byte for
// byte.
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <functional>
#include <list>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

class LoopbackServer {
 public:
  class Connection {
   public:
    /// Reads and records the next request, head and body; "" once the client has closed.
    std::string ReadRequest();
    /// Reads a request of any size without keeping it; false once the client has closed.
    bool SkipRequest();
    /// Blocks until all is sent; false if the client has closed.
    bool Send(std::string_view bytes);
    /// Waits until the client or the server ends the connection.
    void WaitForEnd();
    /// Waits; false once the server is being destroyed.
    bool Sleep(std::chrono::milliseconds time);

    Connection(LoopbackServer& server, int socket) : server_(server), socket_(socket) {}

   private:
    friend class LoopbackServer;
    bool Receive();
    LoopbackServer& server_;
    const int socket_;
    std::string ahead_;  // read beyond the last request
    std::thread thread_;
  };
  /// Runs on its own thread for each connection. The connection ends when it returns.
  using Handler = std::function<void(Connection&)>;

  explicit LoopbackServer(Handler handler);
  /// Ends all connections.
  ~LoopbackServer();
  LoopbackServer(const LoopbackServer&) = delete;
  LoopbackServer& operator=(const LoopbackServer&) = delete;

  /// "http://127.0.0.1:<port>" and `path`.
  std::string Url(std::string_view path = "") const;
  int port() const { return port_; }

  /// The requests so far, in the order in which they were completed.
  std::vector<std::string> Requests() { return WaitForRequests(0); }
  /// Waits until there are `count` requests, or for ten seconds, and returns all requests.
  std::vector<std::string> WaitForRequests(std::size_t count);

 private:
  void Accept();

  const Handler handler_;
  const int listener_;
  int stop_[2];  // a pipe that closes when the server is destroyed
  int port_ = 0;
  std::list<Connection> connections_;  // used by the acceptor thread until it has ended
  std::thread acceptor_;
  std::mutex mutex_;  // guards what follows
  std::condition_variable changed_;
  bool ending_ = false;
  std::vector<std::string> requests_;
};

/// Handler: reads a request and never answers.
void NeverAnswer(LoopbackServer::Connection& connection);
/// Handler: starts an answer and never ends it.
void Drip(LoopbackServer::Connection& connection);

/// Handler: reads one request, sends `bytes` and closes.
LoopbackServer::Handler Sending(std::string bytes);
/// An answer of the status line and headers in `head`, such as "200 OK\r\nX-Name: value", with `body` and its length.
std::string WholeAnswer(const std::string& head, const std::string& body);

/// A complete answer: status, body and further header lines.
struct CannedAnswer {
  int status = 200;
  std::string body;
  std::string headers;  ///< each line ended by CRLF
};
/// Handler: answers every request of a connection with what `answer` returns for it.
LoopbackServer::Handler Answering(std::function<CannedAnswer(const std::string& request)> answer);

/// The first line of a request without the version: "POST /path".
std::string RequestLine(const std::string& request);
/// What follows the head of a request.
std::string RequestBody(const std::string& request);
