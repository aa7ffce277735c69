// A text with its name, for lists of arguments and of members.
#pragma once

#include <string>

/// Lives no longer than the call that it is handed to.
struct NamedText {
  const char* name;
  const std::string& value;  ///< UTF-8
};
