// The JSON text routines of the service protocol. They work byte by byte, never decode UTF-8, cannot fail, and
// are safe on any thread.
#pragma once

#include <string>

/// `text` escaped for the inside of a JSON string; no quotes are added. Control bytes without a short form become
/// \u00xx.
std::string JsonEscape(const std::string& text);

/// Adds the same to the end of `result`, without a copy of it elsewhere.
void JsonAppendEscaped(const std::string& text, std::string& result);

/// The unescaped value of the first string member named `key` anywhere in `json`, found by searching for "key":" with
/// no blanks; "" when there is none. A missing closing quote gives the rest of the text. \u escapes are not decoded.
std::string JsonGetString(const std::string& json, const std::string& key);

/// The non-empty lines of `text` (ended by CR, LF or both) as a JSON array of strings.
std::string NlToJsonArray(const std::string& text);
