// The arguments of a tool.
#pragma once

#include <cstdint>
#include <string>

#include "mcp/Protocol.h"

namespace service::mcp {

/// What keeps `arguments` from suiting `schema`, a JSON Schema of an object whose properties have the keywords type,
/// enum, minimum and maximum; empty when nothing does. A number is accepted where a text is expected.
std::string CheckArguments(const Value& schema, const Value& arguments);

/// The argument, or `otherwise` without it.
std::string Text(const Value& arguments, const char* name, const char* otherwise = "");
std::int64_t Number(const Value& arguments, const char* name, std::int64_t otherwise);
bool Flag(const Value& arguments, const char* name);

}  // namespace service::mcp
