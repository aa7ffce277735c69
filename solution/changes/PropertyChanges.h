// Which properties of an element changed.
#pragma once

#include <array>
#include <set>
#include <string>
#include <vector>

#include "canonical/Properties.h"
#include "changes/Changes.h"
#include "changes/Matching.h"

namespace solution {

class PropertyComparer {
 public:
  /// The arguments must outlive the comparer. When `versionsDiffer`, properties that the other export's format does not
  /// know are left out.
  PropertyComparer(const Design& older, const Design& newer, const Matching& matching, bool versionsDiffer);

  /// The changes between the two elements of a pair. An added or removed layout object is one change.
  std::vector<PropertyChange> Compare(const Element& older, const Element& newer) const;

 private:
  using Schemas = std::set<std::string>;
  static const Schemas& SchemasOf(const Design& design, Kind kind, std::array<Schemas, kKindCount>& known);
  bool IsKnownToBoth(const Property& property, Kind kind) const;

  const Design& older_;
  const Design& newer_;
  const Matching& matching_;
  const bool versionsDiffer_;
  mutable std::array<Schemas, kKindCount> olderSchemas_, newerSchemas_;  // found when first needed
};

}  // namespace solution
