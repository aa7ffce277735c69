// References between the elements of a design.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "design/Design.h"

namespace solution {

struct Reference {
  const Element* from = nullptr;  ///< a whole element: a script rather than its step, a layout rather than its object
  Kind toKind = Kind::kField;
  const Element* to = nullptr;  ///< null when it is missing or in a file whose export is not available
  std::string toUuid;           ///< empty when the export gives none
  std::string toName;           ///< of a field `Table::Field`; of a missing element FileMaker's placeholder
  std::string place;            ///< where in `from`: "step 3 Set Field", "AutoEnter/Calculated"
};

/// True when FileMaker shows that the target of `reference` was deleted.
bool IsBroken(const Reference& reference);

/// Every reference in `design`, in the order of its elements, each once. They are found by reading the definitions,
/// including formulas, so that exports with and without FileMaker's own analysis give the same result. Elements that
/// are not in `design` are looked up in `others`, exports of other files. All designs must outlive the result.
std::vector<Reference> FindReferences(const Design& design, const std::vector<const Design*>& others = {});

}  // namespace solution
