// The form of every JSON message that the service accepts: one object whose members are strings.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace service {

using Message = std::map<std::string, std::string>;

struct Member {
  const char* name;
  bool required = true;
};

/// Reads `text` strictly: one JSON object in UTF-8 that has each required member, only known members, no member twice,
/// and only strings as values. Throws HttpError 400 that says what is wrong.
Message ReadMessage(std::string_view text, const std::vector<Member>& members);

/// The member's value, if the message has it.
std::optional<std::string> Find(const Message& message, const char* name);

}  // namespace service
