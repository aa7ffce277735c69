// The relationships graph as FileMaker draws it.
#pragma once

#include <string>
#include <vector>

#include "design/Design.h"

namespace solution {

/// One condition of a relationship: "Orders::ID" "=" "Lines::OrderID".
struct Predicate {
  std::string left, sign, right;
};

std::vector<Predicate> PredicatesOf(const Design& design, const Element& relationship);

}  // namespace solution
