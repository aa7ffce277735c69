// What changed between two exports of a file.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "design/Design.h"

namespace solution {

enum class ChangeKind { kAdded, kRemoved, kRenamed, kMoved, kEdited };

/// "added", "removed", "renamed", "moved", "edited".
std::string_view WordOf(ChangeKind change);

struct PropertyChange {
  std::string name;   ///< as in Property; "name", "folder" or "order" of a renamed or moved element
  std::string older;  ///< several values of one name on separate lines; empty when there was none
  std::string newer;
};

struct Change {
  ChangeKind change = ChangeKind::kEdited;
  const Element* older = nullptr;          ///< null for an added element
  const Element* newer = nullptr;          ///< null for a removed one
  std::vector<PropertyChange> properties;  ///< of a renamed, moved or edited element
};

struct Comparison {
  std::vector<Change> changes;        ///< by kind, in the order of the newer export; an element may have several
  std::vector<std::string> warnings;  ///< what limits the comparison, one line each
};

/// Called periodically during long operations with the progress so far.
using Progress = std::function<void(std::size_t done, std::size_t total)>;

/// Compares the definitions of all elements. An element does not count as edited because it refers to a renamed one.
/// When different versions of FileMaker saved the exports, only elements whose modification counters differ can count
/// as edited, because each version describes the same definition in its own way.
Comparison Compare(const Design& older, const Design& newer, const Progress& progress = nullptr);

}  // namespace solution
