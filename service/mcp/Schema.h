// JSON Schemas of what tools take and return, from a short form.
#pragma once

#include "mcp/Protocol.h"

namespace service::mcp {

/// The schema of an object whose members `members` lists, a JSON object: by the name of each, with "!" after it when it
/// is always there, its type. That is "text", "integer" or "boolean"; the name of a member that several tools have,
/// such as "@design"; [T], an array; a schema, which has "type"; or the members of an object.
Json SchemaOf(const char* members);

}  // namespace service::mcp
