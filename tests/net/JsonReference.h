// The JSON text routines once more, byte by byte and as plainly as possible, to compare the real ones with.
#pragma once

#include <cstdio>
#include <string>

namespace reference {

inline std::string JsonEscape(const std::string& text) {
  std::string result;
  for (const char byte : text) {
    switch (byte) {
      case '\t':
        result += "\\t";
        break;
      case '\n':
        result += "\\n";
        break;
      case '\r':
        result += "\\r";
        break;
      case '"':
      case '\\':
        result += std::string("\\") + byte;
        break;
      default:
        if (static_cast<unsigned char>(byte) < 32) {
          char code[8];
          std::snprintf(code, sizeof code, "\\u%04x", static_cast<unsigned>(byte));
          result += code;
        } else {
          result += byte;
        }
    }
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
  std::string result = "[", line;
  const auto end_line = [&] {
    if (!line.empty()) result += (result == "[" ? "\"" : ",\"") + JsonEscape(line) + "\"";
    line.clear();
  };
  for (const char byte : text) {
    if (byte == '\r' || byte == '\n') {
      end_line();
    } else {
      line += byte;
    }
  }
  end_line();
  return result + "]";
}

}  // namespace reference
