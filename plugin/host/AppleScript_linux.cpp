#include "host/AppleScript.h"

bool AppleScript::Run(const std::string&, std::string&, std::string& error) {
  error = std::string(kErrorStart) + "AppleScript is a part of macOS.";
  return false;
}
