// What varnix-service does with designs on files: exports saved with "Save a Copy as XML".
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "designs/Terminal.h"

namespace service {

/// All of these write to `out`, warnings to `warnings`, and throw std::runtime_error when a file cannot be read or
/// written. Paths are UTF-8.

struct ChangesOptions {
  std::string older = {}, newer = {};
  bool json = false;  ///< one JSON object per line
};
void PrintChanges(const ChangesOptions& options, const Colours& colours, std::ostream& out, std::ostream& warnings);

struct ReferencesOptions {
  std::string file = {};
  std::vector<std::string> others = {};  ///< exports of other files of the solution
  std::string of = {};                   ///< only what this element uses and is used by; empty for all
  bool unused = false;                   ///< instead, the elements that nothing refers to
  bool broken = false;                   ///< instead, the references to what was deleted
  bool json = false;
};
void PrintReferences(const ReferencesOptions& options, const Colours& colours, std::ostream& out,
                     std::ostream& warnings);

/// Returns false when nothing was found.
bool PrintSearch(const std::string& text, const std::string& file, const Colours& colours, std::ostream& out,
                 std::ostream& warnings);

void ExportDesign(const std::string& file, const std::string& folder, std::ostream& out, std::ostream& warnings);

}  // namespace service
