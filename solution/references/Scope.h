// What bare names mean in the formulas of an element.
#pragma once

#include "formula/FormulaReferences.h"

namespace solution {

/// The scope of the formula in `node`, which belongs to `element`.
FormulaScope ScopeOf(const Design& design, const Element& element, pugi::xml_node node);

}  // namespace solution
