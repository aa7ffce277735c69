// A text with its name, for lists of arguments and of members.
#pragma once

#include <string>

/// Refers to `value`: valid only during the call that it is passed to.
struct NamedText {
  const char* name;
  const std::string& value;  ///< UTF-8
};
