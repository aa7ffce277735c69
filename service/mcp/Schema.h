// Expands a short form to the JSON Schemas of tools' arguments and results.
#pragma once

#include "mcp/Protocol.h"

namespace service::mcp {

/// The schema of an object. `members` is a JSON object that maps the name of each member to its type; "!" after the
/// name marks a member that is always present. A type is "text", "integer" or "boolean"; the name of a member that
/// several tools share, such as "@design"; [T] for an array; a schema, which has "type"; or the members of an object.
Json SchemaOf(const char* members);

}  // namespace service::mcp
