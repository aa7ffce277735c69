#include "mcp/Protocol.h"

namespace service::mcp {
namespace {

// Checked before parsing, because recursion over deeper objects could overflow the stack.
bool IsTooDeep(std::string_view text) {
  std::size_t depth = 0;
  bool inString = false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    if (inString) {
      if (c == '\\') ++i;
      if (c == '"') inString = false;
      continue;
    }
    if (c == '"') inString = true;
    if ((c == '{' || c == '[') && ++depth > kDeepestMessage) return true;
    if ((c == '}' || c == ']') && depth > 0) --depth;
  }
  return false;
}

Incoming Refused(ErrorCode code, const char* message, Value id = nullptr) {
  Incoming incoming;
  incoming.kind = Incoming::Kind::kRequest;
  incoming.id = std::move(id);
  incoming.error = ProtocolError(code, message);
  return incoming;
}

bool IsId(const Value& id) { return id.is_string() || id.is_number_integer(); }

Incoming ReadObject(Value& message) {
  const bool hasMethod = message.contains("method");
  if (!hasMethod && (message.contains("result") || message.contains("error"))) return {};
  const bool isRequest = message.contains("id");
  Value id = isRequest ? message["id"] : Value();
  if (isRequest && !IsId(id)) return Refused(kInvalidRequest, "the id must be a string or an integer");
  if (!hasMethod || !message["method"].is_string() || message.value("jsonrpc", Value()) != "2.0") {
    // Only requests are answered. A message with a method but no id was meant as a notification.
    if (!isRequest && hasMethod) return {};
    return Refused(kInvalidRequest, "the message is not a JSON-RPC 2.0 request: it needs jsonrpc \"2.0\" and a method",
                   std::move(id));
  }
  if (message.contains("params") && !message["params"].is_object()) {
    return isRequest ? Refused(kInvalidParams, "params must be an object", std::move(id)) : Incoming();
  }
  Incoming incoming;
  incoming.kind = isRequest ? Incoming::Kind::kRequest : Incoming::Kind::kNotification;
  incoming.id = std::move(id);
  incoming.method = message["method"].get<std::string>();
  if (message.contains("params")) incoming.params = std::move(message["params"]);
  return incoming;
}

std::string Line(const Json& message) { return message.dump(-1, ' ', false, Json::error_handler_t::replace); }

}  // namespace

Incoming ReadIncoming(std::string_view line) {
  if (IsTooDeep(line)) return Refused(kInvalidRequest, "the message is nested too deeply");
  Value message = Value::parse(line, nullptr, false);
  if (message.is_discarded()) return Refused(kParseError, "the line is not JSON in UTF-8");
  if (message.is_array())
    return Refused(kInvalidRequest, "batches are not part of the protocol: send one message per line");
  if (!message.is_object()) return Refused(kInvalidRequest, "the message must be a JSON object");
  return ReadObject(message);
}

std::string ResultMessage(const Value& id, const Json& result) {
  return Line({{"jsonrpc", "2.0"}, {"id", id}, {"result", result}});
}

std::string ErrorMessage(const Value& id, const ProtocolError& error) {
  Json description{{"code", error.code()}, {"message", error.what()}};
  if (!error.data().is_null()) description["data"] = error.data();
  return Line({{"jsonrpc", "2.0"}, {"id", id}, {"error", std::move(description)}});
}

std::string NotificationMessage(const char* method, const Json& params) {
  return Line({{"jsonrpc", "2.0"}, {"method", method}, {"params", params}});
}

}  // namespace service::mcp
