// Where in an element something is, in words.
#pragma once

#include <string>
#include "export/XmlTree.h"

namespace solution {

/// The place of `node` below `root`, a node of an element: the script step, layout object, trigger or menu item that
/// contains it, otherwise the path.
std::string PlaceOf(XmlNode node, XmlNode root);

}  // namespace solution
