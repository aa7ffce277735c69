// The bodies of requests, bounded one by one and together.
#pragma once

#include <httplib.h>

#include <atomic>
#include <cstddef>
#include <string>

namespace service {

/// Bodies above the limit, and bodies that come when the others already fill twice the limit, are refused.
class BodyLimit {
 public:
  explicit BodyLimit(std::size_t bytes) : bytes_(bytes) {}

  std::size_t bytes() const { return bytes_; }

 private:
  friend class Body;
  const std::size_t bytes_;
  std::atomic<std::size_t> held_ = 0;
};

/// One request's body, or a part of it, as it is received. Counts towards the limit as long as it lives.
class Body {
 public:
  explicit Body(BodyLimit& limit) : limit_(limit) {}
  ~Body() { limit_.held_ -= bytes_.size(); }
  Body(const Body&) = delete;
  Body& operator=(const Body&) = delete;

  /// Throws HttpError 413 or 503 when the bytes are too many.
  void Append(const char* data, std::size_t size);

  /// Receives all of an ordinary request. Throws HttpError, also for one that broke off or is of another form.
  void Receive(const httplib::Request& request, const httplib::ContentReader& reader);

  const std::string& bytes() const { return bytes_; }

 private:
  BodyLimit& limit_;
  std::string bytes_;
};

/// Reads and forgets what is left of a request, so that a sender in the middle of it comes to see the answer.
void Discard(const httplib::Request& request, const httplib::ContentReader& reader);

}  // namespace service
