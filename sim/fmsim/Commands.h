// The line language of fmsim: a calculation, or a command that begins with a dot.
#pragma once

#include <string>
#include <vector>

#include "fmsim/Session.h"

enum class LineResult { kContinue, kQuit };

/// Carries out one line. Empty lines and lines that begin with "//" do nothing.
LineResult Execute(Session& session, const std::string& line);

/// Whether `line` begins a calculation that more lines must complete.
bool IsUnfinished(const std::string& line);

/// The dot commands.
std::vector<std::string> CommandNames();
