// What moved in a list.
#pragma once

#include <cstddef>
#include <vector>

namespace solution {

/// `positions` gives, in the new order, the old position of each entry. The result are the fewest indices into it
/// without which the rest is in ascending order: the entries that moved.
std::vector<std::size_t> OutOfOrder(const std::vector<std::size_t>& positions);

}  // namespace solution
