#include "protocol/CommandTypes.h"

#include <algorithm>
#include <cctype>

namespace service {
namespace {

using enum Need;
using namespace std::chrono_literals;

// clang-format off
constexpr CommandType kTypes[] = {
    //                         fileName   xmlType    xmlContent  writes  result                        queued  takes
    {"GET_CLIPBOARD",          kNone,     kOptional, kNone,      false,  "push", nullptr,              1min,   10s},
    {"GET_CLIPBOARD_FORMATS",  kNone,     kNone,     kNone,      false,  "push", "CLIPBOARD_FORMATS",  1min,   10s},
    {"LIST_FILES",             kNone,     kNone,     kNone,      false,  "push", "FILE_LIST",          10min,  10s},
    {"DEBUG_CONTEXT",          kOptional, kNone,     kNone,      false,  "push", "CONTEXT_DEBUG",      10min,  10s},
    {"GET_SCHEMA",             kOptional, kNone,     kNone,      false,  "ingest", nullptr,            10min,  45s},
    {"SET_CLIPBOARD",          kNone,     kRequired, kRequired,  true,   nullptr, nullptr,             1min,   0s},
};
// clang-format on

struct Argument {
  const char* member;
  const char* option;
  Need CommandType::*need;
  std::optional<std::string> CommandArguments::*value;
};

constexpr Argument kArguments[] = {
    {"fileName", "--file", &CommandType::fileName, &CommandArguments::fileName},
    {"xmlType", "--xml-type", &CommandType::xmlType, &CommandArguments::xmlType},
    {"xmlContent", "--content", &CommandType::xmlContent, &CommandArguments::xmlContent},
};

// The plug-in's JSON reader knows only the escapes of tab, line feed and return.
bool PluginCanRead(const std::string& text) {
  return std::none_of(text.begin(), text.end(),
                      [](unsigned char byte) { return byte < 0x20 && byte != '\t' && byte != '\n' && byte != '\r'; });
}

std::string Name(std::string_view type, Reader reader) {
  return reader == Reader::kProgram ? std::string(type) : PublicName(type);
}

}  // namespace

const CommandType* FindCommandType(std::string_view name) {
  const auto* found = std::find_if(std::begin(kTypes), std::end(kTypes), [&](auto& type) { return name == type.name; });
  return found == std::end(kTypes) ? nullptr : found;
}

const CommandType* FindNamedCommandType(std::string name) {
  std::transform(name.begin(), name.end(), name.begin(),
                 [](unsigned char byte) { return static_cast<char>(byte == '-' ? '_' : std::toupper(byte)); });
  return FindCommandType(name);
}

std::string PublicName(std::string_view type) {
  std::string name(type);
  std::transform(name.begin(), name.end(), name.begin(),
                 [](unsigned char byte) { return static_cast<char>(byte == '_' ? '-' : std::tolower(byte)); });
  return name;
}

std::string CheckArguments(const CommandType& type, const CommandArguments& arguments, Reader reader) {
  for (const auto& argument : kArguments) {
    const std::string name = reader == Reader::kProgram ? argument.member : argument.option;
    const Need need = type.*argument.need;
    const auto& value = arguments.*argument.value;
    if (value && need == kNone) return Name(type.name, reader) + " takes no " + name;
    if (need == kRequired && (!value || value->empty())) return Name(type.name, reader) + " needs " + name;
    if (value && !PluginCanRead(*value)) return name + " contains control characters, which the plug-in cannot read";
  }
  return {};
}

std::string CommandTypeNames(Reader reader) {
  std::string names;
  for (const auto& type : kTypes) names += (names.empty() ? "" : ", ") + Name(type.name, reader);
  return names;
}

}  // namespace service
