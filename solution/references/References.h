// References between the elements of a design.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "design/Design.h"

namespace solution {

struct Reference {
  const Element* from = nullptr;  ///< the whole element: the script and not its step, the layout and not its object
  Kind toKind = Kind::kField;
  const Element* to = nullptr;  ///< null when it is missing or in a file whose export is not available
  std::string toUuid;           ///< empty when the export gives none
  std::string toName;           ///< of a field `Table::Field`; of a missing element FileMaker's placeholder
  std::string place;            ///< where in `from`: "step 3 Set Field", "AutoEnter/Calculated"
};

/// True when FileMaker shows that what `reference` names was deleted.
bool IsBroken(const Reference& reference);

/// Every reference in `design`, in the order of its elements, each once. Found by reading the definitions, formulas
/// included, so that exports with and without FileMaker's own analysis give the same. What `design` does not have is
/// looked for in `others`, exports of other files, which must outlive the result like `design`.
std::vector<Reference> FindReferences(const Design& design, const std::vector<const Design*>& others = {});

}  // namespace solution
