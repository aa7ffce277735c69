// Speeds as ratios. Machines differ and are never quiet, so each routine is compared with another in the same run.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace bench {

struct Comparison {
  std::string operation;
  std::size_t bytes;                  ///< processed by one call
  std::function<void()> ours, rival;  ///< each keeps its result from being optimised away
  double demanded;                    ///< the lowest acceptable ratio of our speed to the rival's
};

/// Measures both sides of each comparison in turn, in several rounds, and prints a table of the best result of each
/// side, and our speed as a fraction of memcpy's. Returns the exit status for main: 1 if a ratio is too low, which is
/// reported on stderr.
int Compare(const std::vector<Comparison>& comparisons);

}  // namespace bench
