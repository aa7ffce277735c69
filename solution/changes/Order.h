// What moved in a list.
#pragma once

#include <cstddef>
#include <vector>

namespace solution {

/// `positions` gives, in the new order, the old position of each entry. Returns the smallest set of indices into it
/// whose removal leaves the rest in ascending order: the entries that moved.
std::vector<std::size_t> OutOfOrder(const std::vector<std::size_t>& positions);

}  // namespace solution
