// The requests that a client can make.
#pragma once

#include "mcp/Call.h"

namespace service::mcp {

/// The revisions of the protocol in which a method exists: those with sessions, the modern one, or both.
enum class Era { kSession, kModern, kBoth };

/// How long a client may keep the answer, in the modern revision.
enum class Caching { kNone, kLong, kNotAtAll };

struct Method {
  const char* name;
  Era era;
  bool isQuick;  ///< it is answered before the next line is read
  Caching caching;
  /// The result; throws ProtocolError, Cancelled or any std::exception.
  Json (*answer)(Call& call, const Value& params);
};

/// Throws ProtocolError when the method does not exist.
const Method& FindMethod(const std::string& name, bool isModern);

/// The server's name and version.
Json ServerInfo();

/// The answer to "initialize" for a client that asks for `version`.
Json Greeting(const std::string& version);

/// What an assistant needs to know before it uses the tools.
const char* Instructions();

}  // namespace service::mcp
