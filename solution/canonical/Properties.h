// The definition of an element as a list of named values.
#pragma once

#include <string>
#include <vector>

#include "canonical/Naming.h"
#include "design/Design.h"

namespace solution {

struct Property {
  std::string name;    ///< its path in the export: "Storage/global", "Button 17/Bounds"; "steps" of a script
  std::string value;   ///< readable: formulas as text, references as names, steps as lines
  std::string key;     ///< compared instead of `value` when that leaves something out; else empty
  std::string object;  ///< the layout object that it belongs to: "Button 17"; else empty
  std::string schema;  ///< the path without what distinguishes siblings: which property of a kind this is

  const std::string& compared() const { return key.empty() ? value : key; }
};

/// Everything that the export says about `element`, except its name and place, who changed it and when, and what
/// FileMaker computes. In the order of the export. Empty values are left out, because versions differ in which of them
/// they write.
std::vector<Property> PropertiesOf(const Design& design, const Element& element, const Naming& naming = NameOnly);

/// The element in readable form: its properties, or the steps of a script. Equal definitions give equal texts.
std::string CanonicalText(const Design& design, const Element& element);

}  // namespace solution
