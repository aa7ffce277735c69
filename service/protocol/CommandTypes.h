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
  std::chrono::seconds queuedFor;  ///< it then expires if no plug-in has fetched it; the sender may set another time
  /// How long a plug-in may take before the next command with such a result is delivered. Results name no command, so
  /// those of two commands at the same time could be confused.
  std::chrono::seconds takes;
};

/// The type of that exact name, or null.
const CommandType* FindCommandType(std::string_view name);

/// The type with a name as people write it, such as "get-schema", or null. "GET_SCHEMA" is accepted, too.
const CommandType* FindNamedCommandType(std::string name);

/// The name of a type as people write it.
std::string PublicName(std::string_view type);

/// A command's arguments as the plug-in names them.
struct CommandArguments {
  std::optional<std::string> fileName;
  std::optional<std::string> xmlType;
  std::optional<std::string> xmlContent;
};

/// Who reads a text: a program that sends members of a message, or a person who types options.
enum class Reader { kProgram, kPerson };

/// What is wrong with the arguments for `type`, worded for `reader`; empty when nothing is.
std::string CheckArguments(const CommandType& type, const CommandArguments& arguments, Reader reader);

/// The names of all types, joined by ", ".
std::string CommandTypeNames(Reader reader);

}  // namespace service
