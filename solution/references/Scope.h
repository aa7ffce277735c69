// What bare names mean in the formulas of an element.
#pragma once

#include "formula/FormulaReferences.h"

namespace solution {

/// The scope of the formula in `node`, which belongs to `element`.
FormulaScope ScopeOf(const Design& design, const Element& element, XmlNode node);

/// The references in the text of `node`, a formula or the text of a layout. Their views point into `text`.
std::vector<FormulaReference> FindReferences(const Design& design, const Element& element, XmlNode node,
                                             std::string_view text);

}  // namespace solution
