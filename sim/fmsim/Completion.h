// Completion of the words typed at the prompt.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "fmsim/Session.h"

struct Completion {
  std::size_t start = 0;           ///< where in the line the word begins, in bytes
  std::vector<std::string> names;  ///< all that begin with the word, without regard to case, in order; UTF-8
};

/// Completes the end of `line` (UTF-8): the argument of a command that takes a file, a script or a path; otherwise a
/// command, or a function or Get parameter of a calculation.
Completion Complete(Session& session, std::string_view line);

/// The function, Get parameter or command whose name is closest to the misspelled `name`; empty when none is close.
std::string NearestName(Session& session, const std::string& name);
