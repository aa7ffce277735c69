// Reads a "Save a Copy as XML" export into a Solution.
#pragma once

#include <string>

#include "solution/Solution.h"

namespace sim {

/// Reads the export at `path` (UTF-8). On failure returns false and `error` holds one line that names the file, the
/// reason and, for a damaged one, the line; `solution` is then untouched.
bool ReadSolution(const std::string& path, Solution& solution, std::string& error);

/// Reads an export in memory: `bytes` in any encoding that exports have. `path` only names it in messages.
bool ReadSolutionBytes(std::string bytes, const std::string& path, Solution& solution, std::string& error);

}  // namespace sim
