// Reading the recurring pieces of an export's XML. Children are always chosen by name: their order differs by version.
#pragma once

#include <pugixml.hpp>
#include <string>

#include "sim/solution/Solution.h"

namespace sim::xml {

/// An attribute's text; empty when there is none.
std::u16string Text(pugi::xml_attribute attribute);

/// All text directly inside `element`, which may come in several CDATA sections.
std::u16string Text(pugi::xml_node element);

/// FileMaker writes `True` and `False`; a missing attribute is false.
bool IsTrue(pugi::xml_attribute attribute);

int Id(pugi::xml_node element);
std::u16string Name(pugi::xml_node element);

/// The formula of the `Calculation` inside `element`, which versions nest once or twice; empty when there is none.
std::u16string Formula(pugi::xml_node element);

/// What an entry of the script, layout or custom-function list is.
ListItem Kind(pugi::xml_node entry);

}  // namespace sim::xml
