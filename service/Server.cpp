#include "Server.h"

#include <sys/socket.h>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <stdexcept>

#include "HttpError.h"

namespace service {
namespace {

constexpr std::size_t kThreads = 16;
constexpr std::time_t kReadSeconds = 30;

void AnswerError(httplib::Response& response, int status, const std::string& message) {
  response.headers.clear();
  Answer(response, {{"error", message}}, status);
}

void AnswerException(httplib::Response& response, const std::exception_ptr& exception) {
  try {
    std::rethrow_exception(exception);
  } catch (const HttpError& error) {
    AnswerError(response, error.status(), error.what());
  } catch (const std::exception& error) {
    AnswerError(response, 500, std::string("the service failed: ") + error.what());
  }
}

// Errors that the library finds by itself have no body.
void AnswerLibraryError(httplib::Response& response) {
  if (response.body.empty()) {
    AnswerError(response, response.status, response.status == 404 ? "there is no such address" : "bad request");
  }
}

// Before the body is read: what is not answered must not be read into memory either.
void CheckRequest(const Context& context, const httplib::Request& request) {
  if (request.method != "GET" && request.method != "HEAD" && request.method != "POST") {
    throw HttpError(405, request.method + " is not taken here");
  }
  if (request.method == "POST" && !request.has_header("Content-Length") && !request.has_header("Transfer-Encoding")) {
    throw HttpError(411, "Content-Length is missing");
  }
  context.access.RefuseWebPages(request);
}

void Configure(httplib::Server& http, Context& context) {
  using httplib::Request;
  using httplib::Response;
  http.new_task_queue = [] { return new httplib::ThreadPool(kThreads); };
  // One request for each connection: an idle connection would hold a thread, and a refused body would have to be read
  // to its end.
  http.set_keep_alive_max_count(1);
  http.set_read_timeout(kReadSeconds);
  http.set_write_timeout(kReadSeconds);
  // The library's choice would let two services share a port, each with half of the requests.
  http.set_socket_options([](auto socket) {
    const int on = 1;
    setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
  });
  http.set_pre_routing_handler([&](const Request& request, Response&) {
    CheckRequest(context, request);
    return httplib::Server::HandlerResponse::Unhandled;
  });
  http.set_exception_handler([](const Request&, Response& response, const std::exception_ptr& exception) {
    AnswerException(response, exception);
  });
  http.set_error_handler([](const Request&, Response& response) { AnswerLibraryError(response); });
  AddProtocolRoutes(http, context);
  AddUploadRoutes(http, context);
  AddOperatorRoutes(http, context);
  // The library would take the body of any other POST into memory.
  http.Post(".*", [](const Request& request, Response& response, const httplib::ContentReader& reader) {
    Discard(request, reader);
    response.status = 404;
  });
}

}  // namespace

Server::Server(const ListenAddress& address, Context& context) {
  Configure(http_, context);
  errno = 0;
  const int port = address.port == 0 ? http_.bind_to_any_port(address.host)
                                     : (http_.bind_to_port(address.host, address.port) ? address.port : -1);
  const bool isV6 = address.host.find(':') != std::string::npos;
  const std::string host = isV6 ? '[' + address.host + ']' : address.host;
  if (port < 0) {
    const std::string reason = errno == 0 ? "there is no such address" : std::strerror(errno);
    throw std::runtime_error("cannot listen on " + host + ':' + std::to_string(address.port) + ": " + reason);
  }
  url_ = "http://" + host + ':' + std::to_string(port);
  thread_ = std::thread([this] { http_.listen_after_bind(); });
  while (!http_.is_running()) std::this_thread::yield();  // to stop it earlier would have no effect
}

Server::~Server() {
  http_.stop();
  thread_.join();
}

}  // namespace service
