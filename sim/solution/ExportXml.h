// Reading the recurring pieces of an export's XML. Children are always chosen by name: their order differs by version.
#pragma once

#include <pugixml.hpp>
#include <string>
#include <vector>

#include "export/Document.h"
#include "solution/Solution.h"

namespace sim::xml {

using solution::Damage;

/// An attribute's text; empty when there is none.
std::u16string Text(pugi::xml_attribute attribute);

/// All text directly inside `element`, which may come in several CDATA sections.
std::u16string Text(pugi::xml_node element);

/// FileMaker writes `True` and `False`; a missing attribute is false.
bool IsTrue(pugi::xml_attribute attribute);

/// Throws Damage when there is no attribute `id`, or when it is no number from 0 on.
int Id(pugi::xml_node element);
/// The id in the child `reference` of `element`. Throws Damage when there is none.
int ReferencedId(pugi::xml_node element, const char* reference);
/// The children `name` of `list`. Throws Damage when two of them have the same id.
std::vector<pugi::xml_node> Entries(pugi::xml_node list, const char* name);

std::u16string Name(pugi::xml_node element);

/// The formula of the `Calculation` inside `element`, which versions nest once or twice; empty when there is none.
std::u16string Formula(pugi::xml_node element);

/// What an entry of the script, layout or custom-function list is.
ListItem Kind(pugi::xml_node entry);

}  // namespace sim::xml
