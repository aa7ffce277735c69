// The arguments of a tool.
#pragma once

#include <cstdint>
#include <string>

#include "mcp/Protocol.h"

namespace service::mcp {

/// Why `arguments` do not conform to `schema`; empty if they do. `schema` is the JSON Schema of an object whose
/// properties have the keywords type, enum, minimum and maximum. A number is accepted in place of a string.
std::string CheckArguments(const Value& schema, const Value& arguments);

/// The argument `name`; `otherwise` if it is missing.
std::string Text(const Value& arguments, const char* name, const char* otherwise = "");
std::int64_t Number(const Value& arguments, const char* name, std::int64_t otherwise);
bool Flag(const Value& arguments, const char* name);

}  // namespace service::mcp
