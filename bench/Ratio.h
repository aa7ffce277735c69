// Speeds as ratios. Machines differ and are never quiet, so a routine is compared with another one in the same run.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace bench {

struct Comparison {
  std::string operation;
  std::size_t bytes;                  ///< worked through by one call
  std::function<void()> ours, rival;  ///< each keeps its result from being optimised away
  double demanded;                    ///< the least ratio of our speed to the rival's
};

/// Measures the two sides of each comparison in turn, several rounds of all, and prints a table of the best of each
/// side, and our speed as a part of memcpy's. Returns the exit status for main: 1 if a ratio is below what is demanded,
/// which it reports on stderr.
int Compare(const std::vector<Comparison>& comparisons);

}  // namespace bench
