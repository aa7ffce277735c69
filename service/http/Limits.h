// How much of the service one client, and all of them together, may use.
#pragma once

#include <atomic>
#include <chrono>
#include <cstddef>
#include <string>
#include <string_view>

namespace service {

inline constexpr std::size_t kHeadBytes = 16 << 10;       ///< request line and headers
inline constexpr std::size_t kSmallBodyBytes = 64 << 10;  ///< messages without a file; bodies before the right key
inline constexpr std::size_t kConnections = 500;          ///< open at the same time
inline constexpr std::size_t kThreads = 16;  ///< that read, execute and answer requests; some wait for each other

/// How long things may take.
struct Times {
  std::chrono::milliseconds head = std::chrono::seconds(10);      ///< from the connection to the end of the headers
  std::chrono::milliseconds silence = std::chrono::seconds(30);   ///< between two pieces of a body
  std::chrono::milliseconds request = std::chrono::seconds(150);  ///< all of it; the plug-in gives up after 120 s
  std::chrono::milliseconds download = std::chrono::hours(1);     ///< of a file, which may be large
  std::chrono::milliseconds linger = std::chrono::seconds(10);    ///< for a sender that was answered while it sent
  std::chrono::milliseconds end = std::chrono::seconds(3);        ///< for requests in progress when the service ends
  std::chrono::milliseconds comment = std::chrono::seconds(15);   ///< of silence in a stream of events before a comment
  std::chrono::milliseconds poll = std::chrono::seconds(10);      ///< without a poll before the plug-in counts as gone
  std::chrono::milliseconds patience = std::chrono::seconds(1);   ///< with a search whose client seems to be gone
  std::chrono::milliseconds index = std::chrono::seconds(1);      ///< that a request waits for designs being indexed
  std::chrono::milliseconds watch = std::chrono::seconds(1);      ///< between two checks of what only time changes
};

/// Bodies above the limit are refused, and so are bodies that arrive while all others already take twice the limit.
class BodyLimit {
 public:
  explicit BodyLimit(std::size_t bytes) : bytes_(bytes) {}

  std::size_t bytes() const { return bytes_; }

 private:
  friend class Body;
  const std::size_t bytes_;
  std::atomic<std::size_t> held_ = 0;
};

/// One request's body as it is received. Counts towards the limit while it exists. One thread at a time.
class Body {
 public:
  /// Accepts at most `most` bytes, or as many as the limit allows if that is less.
  Body(BodyLimit& limit, std::size_t most);
  ~Body() { limit_.held_ -= bytes_.size(); }
  Body(const Body&) = delete;
  Body& operator=(const Body&) = delete;

  /// Throws HttpError 413 for a request that announces more bytes than accepted.
  void Announce(std::size_t bytes) const;

  /// Throws HttpError 413 when this body becomes too large, 503 when all bodies together do.
  void Append(std::string_view bytes);

  const std::string& bytes() const { return bytes_; }

 private:
  BodyLimit& limit_;
  const std::size_t most_;
  std::string bytes_;
};

/// Raises this process's limit of descriptors as far as the system permits and the connections need, and returns how
/// many connections fit. On macOS the default is 256 descriptors.
std::size_t ReserveConnections();

}  // namespace service
