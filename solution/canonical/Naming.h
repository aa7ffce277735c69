// The names under which elements appear in canonical texts.
#pragma once

#include <functional>
#include <string>

#include "design/Design.h"
#include "references/Resolve.h"

namespace solution {

/// Gives the name of an element; DisplayName by default. When two exports are compared, an element of the older one
/// appears under the name that it has in the newer one, so that a renamed field changes nothing but the field.
using Naming = std::function<std::string(const Element&)>;

/// The name alone, under which other elements refer to `element`: a field without its table.
std::string NameOnly(const Element& element);

/// The name of `target`: a field as `Occurrence::Field`.
std::string TargetName(const Design& design, const Target& target, const Naming& naming);

/// The formula or layout text in `node` of `element`, with the names in it as `naming` gives them.
std::string FormulaText(const Design& design, const Element& element, XmlNode node, const Naming& naming);

}  // namespace solution
