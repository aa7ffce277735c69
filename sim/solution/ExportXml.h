// Reads the recurring pieces of an export's XML. Children are always selected by name: their order differs by version.
#pragma once

#include <string>
#include <vector>
#include "export/XmlTree.h"

#include "export/Document.h"
#include "solution/Solution.h"

namespace sim::xml {

using solution::Damage;

/// An attribute's text; empty when there is none.
std::u16string Text(solution::XmlAttribute attribute);

/// All text directly inside `element`, which may come in several CDATA sections.
std::u16string Text(solution::XmlNode element);

/// FileMaker writes `True` and `False`; a missing attribute is false.
bool IsTrue(solution::XmlAttribute attribute);

/// Throws Damage when there is no attribute `id`, or when it is not a number of 0 or more.
int Id(solution::XmlNode element);
/// The id in the child `reference` of `element`. Throws Damage when there is none.
int ReferencedId(solution::XmlNode element, const char* reference);
/// The children `name` of `list`. Throws Damage when two of them have the same id.
std::vector<solution::XmlNode> Entries(solution::XmlNode list, const char* name);

std::u16string Name(solution::XmlNode element);

/// The formula of the `Calculation` inside `element`, which versions nest once or twice; empty when there is none.
std::u16string Formula(solution::XmlNode element);

/// What an entry of the script, layout or custom-function list is.
ListItem Kind(solution::XmlNode entry);

}  // namespace sim::xml
