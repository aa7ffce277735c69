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
  bool writes;                     ///< to FileMaker's clipboard
  const char* resultKind;          ///< kind of the record that holds the result; null when there is none
  const char* resultName;          ///< name of that record; null when the name is the answer's own
  std::chrono::seconds queuedFor;  ///< expires after that when no plug-in asked for it; the sender may say otherwise
  /// How long a plug-in may take before the next command with such a result is delivered: results name no command, so
  /// two at once could get each other's.
  std::chrono::seconds takes;
};

/// The type of that exact name, or null.
const CommandType* FindCommandType(std::string_view name);

/// The same for a name as people write it, such as "get-schema". "GET_SCHEMA" is accepted too.
const CommandType* FindNamedCommandType(std::string name);

/// The name of a type as people write it.
std::string PublicName(std::string_view type);

/// A command's arguments as the plug-in names them.
struct CommandArguments {
  std::optional<std::string> fileName;
  std::optional<std::string> xmlType;
  std::optional<std::string> xmlContent;
};

/// Whom a text is for: a program that sends members of a message, or a person who types options.
enum class Reader { kProgram, kPerson };

/// Why the arguments do not suit `type`, for `reader`; empty when they do.
std::string CheckArguments(const CommandType& type, const CommandArguments& arguments, Reader reader);

/// The names of all types, joined by ", ".
std::string CommandTypeNames(Reader reader);

}  // namespace service
