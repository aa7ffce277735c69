// Which elements a formula names.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "design/Design.h"

namespace solution {

/// One name in a formula. A related field, `Occurrence::Field`, gives two: the occurrence and the field.
struct FormulaReference {
  Kind kind = Kind::kField;         ///< a field, table occurrence or custom function
  std::string_view text;            ///< the name as written, a part of the formula
  const Element* target = nullptr;  ///< null when it is in another file or missing
  std::string_view occurrence;      ///< of a field: the occurrence's name as written; empty for a bare field name
};

/// What bare names can mean in a formula.
struct FormulaScope {
  const Element* table = nullptr;       ///< whose fields may be named alone; null when none may
  std::vector<std::string> parameters;  ///< of a custom function, folded
};

/// Finds the references in `formula`, which must outlive the result, in its order. Works for formulas in every
/// language of FileMaker, because names are looked up in the design instead of being recognized by a list of functions.
/// Placeholders such as `<Field Missing>`, which FileMaker writes for what was deleted, have no target.
std::vector<FormulaReference> FindReferences(const Design& design, std::string_view formula, const FormulaScope& scope);

}  // namespace solution
