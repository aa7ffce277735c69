// Messages of the Model Context Protocol: JSON-RPC 2.0, one message on each line.
#pragma once

#include <cstddef>
#include <nlohmann/json.hpp>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

namespace service::mcp {

using Json = nlohmann::ordered_json;
using Value = nlohmann::json;  ///< for input: finds a member of a large object faster

inline constexpr char kModernVersion[] = "2026-07-28";         ///< each request contains its version
inline constexpr char kNewestSessionVersion[] = "2025-11-25";  ///< a session begins with "initialize"
inline constexpr char kOlderSessionVersion[] = "2025-06-18";
inline constexpr std::size_t kDeepestMessage = 64;  ///< nesting of objects and arrays

enum ErrorCode {
  kParseError = -32700,
  kInvalidRequest = -32600,
  kMethodNotFound = -32601,
  kInvalidParams = -32602,
  kInternalError = -32603,
  kResourceNotFound = -32002,  ///< in sessions; kInvalidParams otherwise
  kUnsupportedVersion = -32022,
};

/// A request that is answered with an error of the protocol.
class ProtocolError : public std::runtime_error {
 public:
  ProtocolError(ErrorCode code, const std::string& message, Json data = nullptr)
      : std::runtime_error(message), code_(code), data_(std::move(data)) {}

  ErrorCode code() const { return code_; }
  const Json& data() const { return data_; }  ///< null when there is none

 private:
  ErrorCode code_;
  Json data_;
};

struct Incoming {
  enum class Kind { kRequest, kNotification, kNothing };
  Kind kind = Kind::kNothing;  ///< kNothing: a response, or an invalid notification
  Value id;                    ///< null unless the message is a request, even an invalid one
  std::string method;
  Value params = Value::object();
  std::optional<ProtocolError> error;  ///< the answer to an invalid request
};

/// Parses one line. If it is not valid, the reason is in `error`.
Incoming ReadIncoming(std::string_view line);

/// These return a message without a final newline. Bytes that are not UTF-8 are replaced.
std::string ResultMessage(const Value& id, const Json& result);
std::string ErrorMessage(const Value& id, const ProtocolError& error);
std::string NotificationMessage(const char* method, const Json& params);

}  // namespace service::mcp
