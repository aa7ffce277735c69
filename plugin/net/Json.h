// The JSON text routines of the service protocol. They work byte by byte, never decode UTF-8, cannot fail, and
// are safe on any thread.
#pragma once

#include <string>
#include <string_view>

/// `text` escaped for the inside of a JSON string; no quotes are added. Control bytes without a short form become
/// \u00xx.
std::string JsonEscape(std::string_view text);

/// Adds the same to the end of `result`, without a copy of it elsewhere.
void JsonAppendEscaped(std::string_view text, std::string& result);

/// The unescaped value of the first string member named `key` anywhere in `json`, found by searching for "key":" with
/// no blanks; "" when there is none. A missing closing quote gives the rest of the text. \u escapes are not decoded.
std::string JsonGetString(std::string_view json, std::string_view key);

/// The non-empty lines of `text` (ended by CR, LF or both) as a JSON array of strings.
std::string NlToJsonArray(std::string_view text);

/// Adds the same to the end of `result`, without a copy of it elsewhere.
void JsonAppendLines(std::string_view text, std::string& result);
