// A design as a folder of readable files, for version control.
#pragma once

#include <filesystem>
#include <string>

#include "changes/Changes.h"
#include "design/Design.h"

namespace solution {

/// Writes each element of `design` to its own file below `folder`, by kind and FileMaker's folders. The same design
/// always gives the same files; a file that already has the right content is not rewritten. Files that an earlier call
/// wrote for elements that no longer exist are removed; a list in the folder records them. Refuses a folder that
/// contains files other than those of a previous export and of version control; it never touches the latter. On failure
/// returns false, with one line in `error`.
bool WriteDesignFolder(const Design& design, const std::filesystem::path& folder, std::string& error,
                       const Progress& progress = nullptr);

}  // namespace solution
