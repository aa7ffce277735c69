// Which element of one export is which element of another.
#pragma once

#include <unordered_map>

#include "design/Design.h"

namespace solution {

/// Pairs the elements of two exports: by UUID; then by kind, id and name, fields within paired tables; then, where the
/// older format gives no UUIDs, by kind and id alone.
class Matching {
 public:
  Matching(const Design& older, const Design& newer);

  /// The other element of a pair; null when `element` is only in its own export.
  const Element* NewerOf(const Element& element) const { return Lookup(newer_, element); }
  const Element* OlderOf(const Element& element) const { return Lookup(older_, element); }

 private:
  using Map = std::unordered_map<const Element*, const Element*>;
  static const Element* Lookup(const Map& map, const Element& element);
  void Pair(const Element* older, const Element* newer);
  const Element* FindById(const Design& newer, const Element& older) const;

  Map newer_;
  Map older_;
};

}  // namespace solution
