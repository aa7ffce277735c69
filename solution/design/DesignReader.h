// Reads a "Save a Copy as XML" export into a Design.
#pragma once

#include <memory>
#include <string>

#include "design/Design.h"

namespace solution {

/// Reads the export at `path` (UTF-8). On failure returns null, and `error` holds one line that names the file, the
/// reason and, for a damaged export, the line.
std::unique_ptr<const Design> ReadDesign(const std::string& path, std::string& error);

/// Reads an export in memory: `bytes` in any encoding that exports have. `path` only names it in `error`.
std::unique_ptr<const Design> ReadDesignBytes(std::string bytes, const std::string& path, std::string& error);

}  // namespace solution
