// A quick look whether two definitions are literally the same.
#pragma once

#include <pugixml.hpp>
#include <vector>

namespace solution {

/// True when the nodes are equal apart from what says nothing about an element: UUIDs, counters, hashes, FileMaker's
/// analysis of formulas, the order of attributes. False does not mean that the definitions differ.
bool EqualXml(const std::vector<pugi::xml_node>& a, const std::vector<pugi::xml_node>& b);

}  // namespace solution
