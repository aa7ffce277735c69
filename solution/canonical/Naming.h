// The names under which elements appear in canonical texts.
#pragma once

#include <functional>
#include <string>

#include "design/Design.h"
#include "references/Resolve.h"

namespace solution {

/// Returns the name to show for an element. When two exports are compared, an element of the older one appears under
/// the name that it has in the newer one, so that renaming a field changes only the field.
using Naming = std::function<std::string(const Element&)>;

/// The default Naming: the name under which other elements refer to `element`, a field without its table.
std::string NameOnly(const Element& element);

/// The name of `target`: a field as `Occurrence::Field`.
std::string TargetName(const Design& design, const Target& target, const Naming& naming);

/// The formula or layout text in `node` of `element`, with the names that `naming` returns.
std::string FormulaText(const Design& design, const Element& element, XmlNode node, const Naming& naming);

}  // namespace solution
