#include "changes/Order.h"

#include <algorithm>

namespace solution {

std::vector<std::size_t> OutOfOrder(const std::vector<std::size_t>& positions) {
  constexpr auto kNone = static_cast<std::size_t>(-1);
  // Longest ascending subsequence: among those of n + 1 entries, ends[n] is the index whose position is the smallest
  // end.
  std::vector<std::size_t> ends, previous(positions.size(), kNone);
  for (std::size_t i = 0; i < positions.size(); ++i) {
    const auto place =
        std::lower_bound(ends.begin(), ends.end(), positions[i],
                         [&](std::size_t end, std::size_t position) { return positions[end] < position; });
    if (place != ends.begin()) previous[i] = *(place - 1);
    if (place == ends.end()) {
      ends.push_back(i);
    } else {
      *place = i;
    }
  }
  std::vector<bool> stays(positions.size(), false);
  for (std::size_t i = ends.empty() ? kNone : ends.back(); i != kNone; i = previous[i]) stays[i] = true;
  std::vector<std::size_t> moved;
  for (std::size_t i = 0; i < positions.size(); ++i) {
    if (!stays[i]) moved.push_back(i);
  }
  return moved;
}

}  // namespace solution
