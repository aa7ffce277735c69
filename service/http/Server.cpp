#include "http/Server.h"

#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/steady_timer.hpp>
#include <boost/asio/strand.hpp>
#include <condition_variable>
#include <list>
#include <mutex>
#include <stdexcept>
#include <thread>
#include <vector>

#include "http/Connection.h"

namespace service {
namespace {

namespace asio = boost::asio;
using asio::ip::tcp;

constexpr auto kPauseWithoutDescriptors = std::chrono::milliseconds(100);

// In an address with a port, an IPv6 address is in brackets.
std::string InAddress(const std::string& host) { return host.find(':') != std::string::npos ? '[' + host + ']' : host; }

}  // namespace

// Accepts connections, limits their number, and runs the threads.
class Server::Listener {
 public:
  Listener(const ListenAddress& address, Context& context)
      : context_(context), acceptor_(asio::make_strand(io_)), pause_(acceptor_.get_executor()) {
    const tcp::endpoint endpoint =
        *tcp::resolver(io_).resolve(address.host, std::to_string(address.port), tcp::resolver::passive).begin();
    acceptor_.open(endpoint.protocol());
    acceptor_.set_option(tcp::acceptor::reuse_address(true));
    acceptor_.bind(endpoint);
    acceptor_.listen();
    context_.url = "http://" + InAddress(address.host) + ':' + std::to_string(acceptor_.local_endpoint().port());
    asio::post(acceptor_.get_executor(), [this] { Accept(); });
    for (std::size_t i = 0; i < kThreads; ++i) threads_.emplace_back([this] { Run(); });
  }

  ~Listener() {
    context_.events.End();
    asio::post(acceptor_.get_executor(), [this] {
      acceptor_.close();
      pause_.cancel();
      for (const auto& entry : connections_) {
        if (const auto connection = entry.lock()) connection->CloseUnlessAtWork();
      }
    });
    {
      std::unique_lock lock(mutex_);
      ended_.wait_for(lock, context_.times.end, [this] { return running_ == 0; });
    }
    io_.stop();
    for (auto& thread : threads_) thread.join();
  }

 private:
  void Run() {
    for (;;) {
      try {
        io_.run();
        break;
      } catch (const std::exception& error) {  // memory ran out; the affected connection is closed
        context_.Log(std::string("a connection failed: ") + error.what());
      }
    }
    const std::lock_guard lock(mutex_);
    if (--running_ == 0) ended_.notify_one();
  }

  void Accept() {
    acceptor_.async_accept(asio::make_strand(io_), [this](boost::system::error_code error, tcp::socket socket) {
      if (!acceptor_.is_open()) return;
      if (error) {  // no descriptor, most likely
        pause_.expires_after(kPauseWithoutDescriptors);
        return pause_.async_wait([this](boost::system::error_code) {
          if (acceptor_.is_open()) Accept();
        });
      }
      Serve(std::move(socket));
      Accept();
    });
  }

  // At the limit, the client that has been connected longest without showing the key is dropped.
  void Serve(tcp::socket socket) {
    connections_.remove_if([](const auto& entry) { return entry.expired(); });
    if (connections_.size() >= most_ && !CloseOldestIdle()) return;
    const auto connection = std::make_shared<Connection>(std::move(socket), context_);
    connections_.push_back(connection);
    connection->Start();
  }

  bool CloseOldestIdle() {
    for (auto entry = connections_.begin(); entry != connections_.end(); ++entry) {
      const auto connection = entry->lock();
      if (connection && connection->IsAtWork()) continue;
      if (connection) connection->CloseUnlessAtWork();
      connections_.erase(entry);
      return true;
    }
    return false;
  }

  Context& context_;
  const std::size_t most_ = ReserveConnections();
  asio::io_context io_;
  tcp::acceptor acceptor_;
  asio::steady_timer pause_;
  std::list<std::weak_ptr<Connection>> connections_;  // oldest first; used on the acceptor's strand
  std::mutex mutex_;
  std::condition_variable ended_;
  std::size_t running_ = kThreads;  // under the mutex
  std::vector<std::thread> threads_;
};

Server::Server(const ListenAddress& address, Context& context) {
  try {
    listener_ = std::make_unique<Listener>(address, context);
  } catch (const boost::system::system_error& error) {
    throw std::runtime_error("cannot listen on " + InAddress(address.host) + ':' + std::to_string(address.port) + ": " +
                             error.code().message());
  }
}

Server::~Server() = default;

}  // namespace service
