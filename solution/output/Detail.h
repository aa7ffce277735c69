// What an element is, in a few words for lists.
#pragma once

#include <string>

#include "design/Design.h"

namespace solution {

/// The names of the folders around `element`, outermost first: "Office/Printing"; of a field its table. Empty at the
/// top level.
std::string ParentPath(const Element& element);

/// One short line: "Number, calculated, global" for a field, "12 steps, full access" for a script, the table occurrence
/// of a layout. Empty when there is nothing to say.
std::string DetailOf(const Design& design, const Element& element);

/// True for a script that runs with full access, no matter who starts it.
bool HasFullAccess(const Element& script);

}  // namespace solution
