// The seam to the platform's URL layer: one HTTP transfer, and its limits. By default the URL layer follows redirects,
// keeps cookies, decodes content, uses the system's proxies and checks certificates. On Linux, redirects from https to
// http and those that would send a body to another origin fail, as do answers that are compressed twice.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace Network {

struct Request {
  std::string url;     ///< accepted by IsURL
  const char* method;  ///< "GET" or "POST", a literal
  std::vector<std::pair<std::string, std::string>> headers;
  std::string body;                    ///< sent with a POST, byte for byte
  std::size_t answerLimit = SIZE_MAX;  ///< the most bytes of a decoded answer; not enforced on macOS
};

struct Outcome {
  bool hasBody = false;  ///< a body arrived, possibly an empty one
  std::string body;
  std::string failure;   ///< why the transfer failed, readable for people; "" when an answer arrived
  long long status = 0;  ///< HTTP status; 0 when no answer arrived
};

inline constexpr char kOutOfMemory[] = "out of memory";  // short enough for a std::string that allocates nothing

/// The outcome of a transfer that failed for `reason`, or kOutOfMemory if there is no memory for that text.
Outcome Failure(const char* reason) noexcept;
/// The outcome of a transfer that received an answer, with a copy of its body (null: none arrived); a failure if there
/// is no memory for the copy.
Outcome Answer(long long status, const char* body, std::size_t size) noexcept;

/// Whether the URL layer accepts `text` (any bytes, normally UTF-8) as a URL. Safe on any thread.
bool IsURL(const std::string& text);

/// Starts the transfer and returns immediately. `completion` is called exactly once, on a thread of the URL layer or,
/// if the transfer cannot be started, on the caller's thread before this returns. It must neither throw nor block. On
/// failure the outcome's `failure` is not empty. Safe on any thread.
void StartTransfer(Request request, std::function<void(Outcome)> completion);

/// How long a transfer may go without data (on Linux: may take in total) before the URL layer gives up.
std::chrono::milliseconds TransferTimeLimit();
/// How long a caller waits for a transfer. Both limits are 120 seconds; tests define their own.
std::chrono::milliseconds WaitTimeLimit();

}  // namespace Network
