// A quick check for literally identical definitions.
#pragma once

#include <vector>
#include "export/XmlTree.h"

namespace solution {

/// True when the nodes are equal apart from what says nothing about an element: UUIDs, counters, hashes, FileMaker's
/// analysis of formulas, the order of attributes. False does not mean that the definitions differ.
bool EqualXml(const std::vector<XmlNode>& a, const std::vector<XmlNode>& b);

}  // namespace solution
