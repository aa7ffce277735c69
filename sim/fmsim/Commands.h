// The line language of fmsim: a calculation, or a command that begins with a dot.
#pragma once

#include <string>
#include <vector>

#include "fmsim/Session.h"

enum class LineResult { kContinue, kQuit };

/// Carries out one line. Blank lines and lines that begin with "//" do nothing.
LineResult Execute(Session& session, const std::string& line);

/// Every name that can be completed at the prompt: functions of the engine, the open files and the plug-ins, parameters
/// of Get, and dot commands.
std::vector<std::string> CompletableNames(Session& session);
