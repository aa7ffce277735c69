// The commands that the plug-in carries out: what each takes and how its result comes back.
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

namespace service {

enum class Need { kNone, kOptional, kRequired };

struct CommandType {
  const char* name;
  Need fileName;
  Need xmlType;
  Need xmlContent;
  const char* resultKind;  ///< kind of the record that holds the result; null when there is none
  const char* resultName;  ///< name of that record; null when the name is the answer's own
  std::chrono::seconds
      queuedFor;  ///< expires when no plug-in has asked for it by then, unless its sender says otherwise
  /// How long a plug-in may take before the next command with such a result is delivered: results name no command, so
  /// two at once could get each other's.
  std::chrono::seconds takes;
};

/// The type of that exact name, or null.
const CommandType* FindCommandType(std::string_view name);

/// A command's arguments as the plug-in names them.
struct CommandArguments {
  std::optional<std::string> fileName;
  std::optional<std::string> xmlType;
  std::optional<std::string> xmlContent;
};

/// Why the arguments do not suit `type`; empty when they do.
std::string CheckArguments(const CommandType& type, const CommandArguments& arguments);

/// The names of all types, joined by ", ".
std::string CommandTypeNames();

}  // namespace service
