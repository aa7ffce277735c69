// A reference implementation of the JSON text routines: byte by byte, as plain as possible.
#pragma once

#include <cstdio>
#include <string>
#include <string_view>

namespace reference {

inline std::string JsonEscape(const std::string& text) {
  constexpr std::string_view kNamed = "\t\n\r\"\\", kNames = "tnr\"\\";
  std::string result;
  for (const unsigned char byte : text) {
    const std::size_t named = kNamed.find(static_cast<char>(byte));
    char code[8] = {static_cast<char>(byte)};
    if (named != kNamed.npos) {
      std::snprintf(code, sizeof code, "\\%c", kNames[named]);
    } else if (byte < 32) {
      std::snprintf(code, sizeof code, "\\u%04x", byte);
    }
    result += code;
  }
  return result;
}

inline std::string JsonGetString(const std::string& json, const std::string& key) {
  const std::string pattern = "\"" + key + "\":\"";
  const std::size_t found = json.find(pattern);
  std::string result;
  if (found == std::string::npos) return result;
  for (std::size_t i = found + pattern.size(); i < json.size() && json[i] != '"'; ++i) {
    if (json[i] != '\\' || i + 1 == json.size()) {
      result += json[i];
      continue;
    }
    const char escaped = json[++i];
    result += escaped == 'n' ? '\n' : escaped == 'r' ? '\r' : escaped == 't' ? '\t' : escaped;
  }
  return result;
}

inline std::string NlToJsonArray(const std::string& text) {
  constexpr char kLineEnds[] = "\r\n";
  std::string result;
  for (std::size_t start = 0; (start = text.find_first_not_of(kLineEnds, start)) != text.npos;) {
    const std::size_t end = text.find_first_of(kLineEnds, start);
    result += (result.empty() ? "[\"" : ",\"") + JsonEscape(text.substr(start, end - start)) + "\"";
    start = end;
  }
  return result.empty() ? "[]" : result + "]";
}

}  // namespace reference
