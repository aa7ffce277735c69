// Long texts in pieces that an assistant can read.
#pragma once

#include <string>

#include "mcp/Protocol.h"

namespace service::mcp {

/// Sets `name` of `json` to the piece of `text` that begins at the argument "offset" and has at most the argument
/// "maxBytes", without cutting a character; "bytes" to the length of the whole text; and "nextOffset" when there is
/// more. Throws ToolError when the text is shorter than the offset.
void SetPiece(Json& json, const char* name, const std::string& text, const Value& arguments);

}  // namespace service::mcp
