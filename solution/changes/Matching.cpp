#include "changes/Matching.h"

namespace solution {

Matching::Matching(const Design& older, const Design& newer) {
  Pair(&older.file(), &newer.file());
  for (const Element& element : older.elements()) {
    const Element* same = newer.Find(element.uuid);
    if (same != nullptr && same->kind == element.kind) Pair(&element, same);
  }
  for (const Element& element : older.elements()) {
    const Element* same = FindById(newer, element);
    if (same != nullptr && same->name == element.name) Pair(&element, same);
  }
  for (const Element& element : older.elements()) {
    const Element* same = FindById(newer, element);
    if (same != nullptr && (element.uuid.empty() || same->uuid.empty())) Pair(&element, same);
  }
}

const Element* Matching::Lookup(const Map& map, const Element& element) {
  const auto found = map.find(&element);
  return found == map.end() ? nullptr : found->second;
}

void Matching::Pair(const Element* older, const Element* newer) {
  if (newer_.count(older) != 0 || older_.count(newer) != 0) return;
  newer_.emplace(older, newer);
  older_.emplace(newer, older);
}

const Element* Matching::FindById(const Design& newer, const Element& older) const {
  if (older.kind != Kind::kField) return newer.Find(older.kind, older.id);
  return newer.FindField(NewerOf(*older.parent), older.id);
}

}  // namespace solution
