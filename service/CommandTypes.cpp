#include "CommandTypes.h"

#include <algorithm>

namespace service {
namespace {

using enum Need;
using namespace std::chrono_literals;

// clang-format off
constexpr CommandType kTypes[] = {
    //                         fileName   xmlType    xmlContent  result                        queued  takes
    {"GET_CLIPBOARD",          kNone,     kOptional, kNone,      "push", nullptr,              1min,   10s},
    {"GET_CLIPBOARD_FORMATS",  kNone,     kNone,     kNone,      "push", "CLIPBOARD_FORMATS",  1min,   10s},
    {"LIST_FILES",             kNone,     kNone,     kNone,      "push", "FILE_LIST",          10min,  10s},
    {"DEBUG_CONTEXT",          kOptional, kNone,     kNone,      "push", "CONTEXT_DEBUG",      10min,  10s},
    {"GET_SCHEMA",             kOptional, kNone,     kNone,      "ingest", nullptr,            10min,  45s},
    {"SET_CLIPBOARD",          kNone,     kRequired, kRequired,  nullptr, nullptr,             1min,   0s},
};
// clang-format on

struct Argument {
  const char* name;
  Need CommandType::*need;
  std::optional<std::string> CommandArguments::*value;
};

constexpr Argument kArguments[] = {
    {"fileName", &CommandType::fileName, &CommandArguments::fileName},
    {"xmlType", &CommandType::xmlType, &CommandArguments::xmlType},
    {"xmlContent", &CommandType::xmlContent, &CommandArguments::xmlContent},
};

// The plug-in's reader of JSON strings knows the escapes of tab, line feed and return only.
bool PluginCanRead(const std::string& text) {
  return std::none_of(text.begin(), text.end(),
                      [](unsigned char byte) { return byte < 0x20 && byte != '\t' && byte != '\n' && byte != '\r'; });
}

}  // namespace

const CommandType* FindCommandType(std::string_view name) {
  const auto* found = std::find_if(std::begin(kTypes), std::end(kTypes), [&](auto& type) { return name == type.name; });
  return found == std::end(kTypes) ? nullptr : found;
}

std::string CheckArguments(const CommandType& type, const CommandArguments& arguments) {
  for (const auto& argument : kArguments) {
    const Need need = type.*argument.need;
    const auto& value = arguments.*argument.value;
    if (value && need == kNone) return std::string(type.name) + " takes no " + argument.name;
    if (need == kRequired && (!value || value->empty())) return std::string(type.name) + " needs " + argument.name;
    if (value && !PluginCanRead(*value)) {
      return std::string(argument.name) + " holds control characters, which the plug-in cannot read";
    }
  }
  return {};
}

std::string CommandTypeNames() {
  std::string names;
  for (const auto& type : kTypes) names += (names.empty() ? "" : ", ") + std::string(type.name);
  return names;
}

}  // namespace service
