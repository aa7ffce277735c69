// A design as a folder of readable files, for version control.
#pragma once

#include <filesystem>
#include <string>

#include "changes/Changes.h"
#include "design/Design.h"

namespace solution {

/// Writes each element of `design` to a file of its own below `folder`, by kind and FileMaker's folders. The same
/// design always gives the same files; a file whose content is right is left alone. Files that an earlier call wrote
/// for elements that no longer exist are removed; a list in the folder remembers them. Refuses a folder that holds
/// other files than a previous export and those of version control, which it never touches. On failure returns false
/// and `error` holds one line.
bool WriteDesignFolder(const Design& design, const std::filesystem::path& folder, std::string& error,
                       const Progress& progress = nullptr);

}  // namespace solution
