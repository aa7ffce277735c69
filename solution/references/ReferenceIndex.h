// Queries about references.
#pragma once

#include <string_view>
#include <unordered_map>
#include <vector>

#include "references/References.h"

namespace solution {

class ReferenceIndex {
 public:
  explicit ReferenceIndex(std::vector<Reference> references);

  const std::vector<Reference>& all() const { return references_; }

  /// The references to and from `element`, in order; not those of an element to itself.
  std::vector<const Reference*> UsedBy(const Element& element) const;
  std::vector<const Reference*> Uses(const Element& element) const;

  /// The references from or to one of `of`, or all if `of` is empty, in order. With `broken` only the broken ones,
  /// otherwise only the others.
  std::vector<const Reference*> Select(const std::vector<const Element*>& of, bool broken) const;

  /// The elements of `design` that no other element refers to. Privilege sets name everything they grant, so they do
  /// not count. Kinds whose elements serve without being referred to are left out: relationships, accounts, FileMaker's
  /// own menus ...
  std::vector<const Element*> Unused(const Design& design) const;

  struct Call {
    int depth = 0;  ///< 1 for the scripts that `script` itself performs
    const Element* script = nullptr;
    bool isRepeated = false;  ///< appeared before, or performs itself: its own calls are not listed again
  };
  /// The scripts that `script` performs, each followed by those that it performs.
  std::vector<Call> CallChain(const Element& script) const;

 private:
  using Map = std::unordered_map<const Element*, std::vector<const Reference*>>;

  std::vector<Reference> references_;
  Map byTarget_, bySource_;
};

/// The elements of `design` with this key, or with this name or UUID (without regard to case). A field is found as
/// `Table::Field`, as `Occurrence::Field` and by its own name.
std::vector<const Element*> FindElements(const Design& design, std::string_view name);

}  // namespace solution
