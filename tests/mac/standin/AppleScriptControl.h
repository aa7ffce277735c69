// A test's hold on the stand-in of AppleScript.
#pragma once

#include <optional>
#include <string>

namespace AppleScriptControl {

/// The script that was run last.
inline std::string source;

/// How scripts end: with a value, or else with an error.
inline bool succeeds = true;
/// The text of the value or of the error, if it has one.
inline std::optional<std::string> text;

}  // namespace AppleScriptControl
