// Opening an export for a command.
#pragma once

#include <iosfwd>
#include <memory>
#include <string>

#include "design/Design.h"

namespace service {

/// Reads the export and writes its notes to `warnings`. Throws std::runtime_error with the reason.
std::unique_ptr<const solution::Design> OpenDesign(const std::string& path, std::ostream& warnings);

}  // namespace service
