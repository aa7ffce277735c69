#include "mcp/Session.h"

#include "http/Agents.h"
#include "mcp/Limits.h"
#include "mcp/Methods.h"

namespace service::mcp {
namespace {

constexpr char kVersionKey[] = "io.modelcontextprotocol/protocolVersion";
constexpr char kCapabilitiesKey[] = "io.modelcontextprotocol/clientCapabilities";
constexpr char kClientKey[] = "io.modelcontextprotocol/clientInfo";
constexpr char kServerKey[] = "io.modelcontextprotocol/serverInfo";
constexpr std::size_t kThreads = 16;
constexpr std::size_t kMostAtWork = 1000;
constexpr auto kEndPatience = std::chrono::seconds(3);
constexpr std::int64_t kLongCaching = 3'600'000;  // milliseconds

std::string NameOf(const Value& clientInfo) {
  const Value given = clientInfo.is_object() ? clientInfo.value("name", Value()) : Value();
  const std::string name = given.is_string() ? AgentName(given.get<std::string>()) : "";
  const bool isBlank = name.find_first_not_of(' ') == std::string::npos;
  return isBlank ? "unnamed" : name;
}

void CheckModern(const Value& meta) {
  const Value version = meta.value(kVersionKey, Value());
  if (!version.is_string()) throw ProtocolError(kInvalidParams, std::string("_meta has no ") + kVersionKey);
  if (version != kModernVersion) {
    throw ProtocolError(kUnsupportedVersion, "unsupported protocol version",
                        {{"supported", {kModernVersion}}, {"requested", version}});
  }
  if (!meta.value(kCapabilitiesKey, Value()).is_object()) {
    throw ProtocolError(kInvalidParams, std::string("_meta has no ") + kCapabilitiesKey);
  }
}

Value ProgressToken(const Value& meta) {
  Value token = meta.value("progressToken", Value());
  return token.is_string() || token.is_number_integer() ? token : Value();
}

void AddModernMembers(Json& result, Caching caching) {
  result["resultType"] = "complete";
  result["_meta"][kServerKey] = ServerInfo();
  if (caching == Caching::kNone) return;
  result["ttlMs"] = caching == Caching::kLong ? kLongCaching : 0;
  result["cacheScope"] = caching == Caching::kLong ? "public" : "private";
}

}  // namespace

// NOLINTNEXTLINE(bugprone-exception-escape): a JSON value's move throws only when its own checks fail
struct Session::Request {
  Value id, params, meta;
  bool isModern = false;
  bool begins = false;             // it is "initialize"
  const Method* method = nullptr;  // null for that
  std::string agent;
};

Session::Session(const Options& options, std::function<void(const std::string&)> send)
    : options_(options), send_(std::move(send)), workers_(kThreads) {}

void Session::Take(std::string_view line) {
  Incoming incoming = ReadIncoming(line);
  if (incoming.kind == Incoming::Kind::kNotification) TakeNotification(incoming);
  if (incoming.kind == Incoming::Kind::kRequest) TakeRequest(std::move(incoming));
}

void Session::Refuse(const ProtocolError& error) { send_(ErrorMessage(nullptr, error)); }

void Session::TakeNotification(const Incoming& incoming) {
  if (incoming.method != "notifications/cancelled") return;
  const std::lock_guard lock(mutex_);
  const auto found = atWork_.find(incoming.params.value("requestId", Value()).dump());
  if (found != atWork_.end()) found->second->Cancel();
}

Session::Request Session::Examine(Incoming incoming) const {
  if (incoming.error) throw *incoming.error;
  Request request;
  request.id = std::move(incoming.id);
  request.params = std::move(incoming.params);
  request.meta = request.params.value("_meta", Value::object());
  if (!request.meta.is_object()) throw ProtocolError(kInvalidParams, "_meta must be an object");
  request.isModern = request.meta.contains(kVersionKey) || incoming.method == "server/discover";
  if (request.isModern) CheckModern(request.meta);
  request.begins = incoming.method == "initialize" && !request.isModern;
  request.agent = request.isModern ? NameOf(request.meta.value(kClientKey, Value())) : agent_;
  if (request.begins) return request;
  request.method = &FindMethod(incoming.method, request.isModern);
  if (!request.isModern && !isInitialized_ && request.method->era != Era::kSession) {
    throw ProtocolError(kInvalidRequest,
                        std::string("the session has not begun: send initialize first, or _meta with ") + kVersionKey +
                            " in each request");
  }
  return request;
}

void Session::TakeRequest(Incoming incoming) {
  const Value id = incoming.id;
  try {
    Request request = Examine(std::move(incoming));
    if (request.begins) return Initialize(request);
    Begin(request);
  } catch (const ProtocolError& error) {
    send_(ErrorMessage(id, error));
  } catch (const std::exception& error) {
    send_(ErrorMessage(id, ProtocolError(kInternalError, error.what())));
  }
}

void Session::Initialize(Request& request) {
  const Value version = request.params.value("protocolVersion", Value());
  if (!version.is_string()) throw ProtocolError(kInvalidParams, "protocolVersion is missing");
  agent_ = NameOf(request.params.value("clientInfo", Value()));
  isInitialized_ = true;
  send_(ResultMessage(request.id, Greeting(version.get<std::string>())));
}

void Session::Begin(const Request& request) {
  Options options = options_;
  options.agent = request.agent;
  const auto call = std::make_shared<Call>(std::move(options), ProgressToken(request.meta), send_);
  {
    const std::lock_guard lock(mutex_);
    if (atWork_.size() >= kMostAtWork) throw ProtocolError(kInternalError, "too many requests are in progress");
    if (!atWork_.emplace(request.id.dump(), call).second) {
      // Without the id: for the client, an answer with it would be the answer to the first request.
      return send_(ErrorMessage(nullptr, ProtocolError(kInvalidRequest, "a request with the id " + request.id.dump() +
                                                                            " is already in progress")));
    }
  }
  if (request.method->isQuick) return CarryOut(request, call);
  workers_.Start([this, request, call] { CarryOut(request, call); });
}

void Session::CarryOut(const Request& request, const std::shared_ptr<Call>& call) {
  std::string answer;
  try {
    call->Check();
    Json result = request.method->answer(*call, request.params);
    if (request.isModern) AddModernMembers(result, request.method->caching);
    answer = ResultMessage(request.id, result);
    if (answer.size() > kLongestAnswer) throw ProtocolError(kInternalError, kTooLong);
  } catch (const Cancelled&) {
  } catch (const ProtocolError& error) {
    const bool isOldCode = error.code() == kResourceNotFound && request.isModern;
    answer = ErrorMessage(request.id, {isOldCode ? kInvalidParams : error.code(), error.what(), error.data()});
  } catch (const std::exception& error) {
    answer = ErrorMessage(request.id, {kInternalError, error.what()});
  }
  {
    const std::lock_guard lock(mutex_);
    atWork_.erase(request.id.dump());
  }
  if (!call->IsCancelled()) send_(answer);
}

bool Session::End() {
  {
    const std::lock_guard lock(mutex_);
    for (const auto& [id, call] : atWork_) call->EndPauses();
  }
  return workers_.AwaitEnd(kEndPatience);
}

}  // namespace service::mcp
