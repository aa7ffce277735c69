// Two texts line by line.
#pragma once

#include <string>
#include <vector>

namespace solution {

struct DiffLine {
  enum class Origin { kBoth, kOlder, kNewer } origin = Origin::kBoth;
  std::string text;
};

/// The lines of both texts in order, with as few differences as possible.
std::vector<DiffLine> DiffLines(const std::string& older, const std::string& newer);

}  // namespace solution
