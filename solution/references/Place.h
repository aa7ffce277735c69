// Where in an element something stands, in words.
#pragma once

#include <pugixml.hpp>
#include <string>

namespace solution {

/// The place of `node` below `root`, a node of an element: the script step, layout object, trigger or menu item that
/// holds it, otherwise the path.
std::string PlaceOf(pugi::xml_node node, pugi::xml_node root);

}  // namespace solution
