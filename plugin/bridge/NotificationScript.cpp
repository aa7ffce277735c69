#include "bridge/NotificationScript.h"

namespace {

std::string Quoted(const std::string& text) {
  std::string quoted = "\"";
  for (const char c : text) {
    if (c == '\\') quoted += '\\';
    quoted += c == '"' ? '\'' : c;
  }
  return quoted + '"';
}

}  // namespace

std::string NotificationScript(const std::string& title, const std::string& message) {
  return "display notification " + Quoted(message) + " with title " + Quoted(title);
}
