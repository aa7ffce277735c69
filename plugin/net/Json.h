// The JSON text routines of the service protocol. They work byte by byte, never decode UTF-8 and cannot fail except for
// lack of memory. Safe on any thread.
#pragma once

#include <string>
#include <string_view>

/// `text` escaped for use between the quotes of a JSON string; no quotes are added. Control bytes without a short form
/// become \u00xx.
std::string JsonEscape(std::string_view text);
/// Appends the escaped `text` to `result`, without a temporary copy.
void JsonAppendEscaped(std::string_view text, std::string& result);

/// The non-empty lines of `text` (ended by CR, LF or both) as a JSON array of strings.
std::string NlToJsonArray(std::string_view text);
/// Appends that array to `result`, without a temporary copy.
void JsonAppendLines(std::string_view text, std::string& result);

/// The unescaped value of the first string member named `key` anywhere in `json`, found by searching for "key":"
/// without spaces; "" when there is none. If the closing quote is missing, the value is the rest of the text. \u
/// escapes are not decoded.
std::string JsonGetString(std::string_view json, std::string_view key);
