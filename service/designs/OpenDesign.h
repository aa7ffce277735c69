// Opens designs for subcommands.
#pragma once

#include <iosfwd>
#include <memory>
#include <string>
#include <utility>

#include "design/Design.h"
#include "designs/DesignStore.h"

namespace service {

/// Whether `name` is the path of an export: it contains a slash or ends in .xml.
bool IsPath(const std::string& name);

/// Reads the export at a path, or a design of the store in `folder`: by its id, or the newest readable one of a file.
/// Writes notes to `warnings`. Throws std::runtime_error with the reason.
std::unique_ptr<const solution::Design> OpenDesign(const std::string& name, const std::string& folder,
                                                   std::ostream& warnings);

/// A design of the store: by its id, or the newest readable one of a file. Throws std::runtime_error.
StoredDesign FindDesign(DesignStore& history, const std::string& name);

/// The names of the newest two readable designs of a file, older first. Throws std::runtime_error when there are fewer.
std::pair<std::string, std::string> NewestTwo(const std::string& file, const std::string& folder);

/// The store in `folder`, after indexing everything that it has received.
DesignStore OpenHistory(const std::string& folder);

}  // namespace service
