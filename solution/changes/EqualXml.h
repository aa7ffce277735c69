// A quick check for literally identical definitions.
#pragma once

#include <vector>
#include "export/XmlTree.h"

namespace solution {

/// True when the nodes are equal except for UUIDs, counters, hashes, FileMaker's analysis of formulas and the order of
/// attributes, which say nothing about an element. False does not mean that the definitions differ.
bool EqualXml(const std::vector<XmlNode>& a, const std::vector<XmlNode>& b);

}  // namespace solution
