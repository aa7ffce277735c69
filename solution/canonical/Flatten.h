// Turns a part of an export into named values.
#pragma once

#include <string>
#include <vector>

#include "canonical/Properties.h"

namespace solution {

/// Appends the properties of `node`, which belongs to `element`, and of everything below it.
void Flatten(const Design& design, const Element& element, XmlNode node, const Naming& naming,
             std::vector<Property>& properties);

}  // namespace solution
