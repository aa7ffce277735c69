#include "changes/LineDiff.h"

#include <dtl/dtl.hpp>
#include <sstream>

namespace solution {
namespace {

std::vector<std::string> Lines(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

}  // namespace

std::vector<DiffLine> DiffLines(const std::string& older, const std::string& newer) {
  dtl::Diff<std::string> diff(Lines(older), Lines(newer));
  diff.compose();
  std::vector<DiffLine> lines;
  std::vector<DiffLine> added;  // at one place; they follow the removed lines
  const auto append = [&lines, &added](DiffLine line) {
    if (line.origin == DiffLine::Origin::kBoth) {
      lines.insert(lines.end(), added.begin(), added.end());
      added.clear();
    }
    (line.origin == DiffLine::Origin::kNewer ? added : lines).push_back(std::move(line));
  };
  for (const auto& [text, info] : diff.getSes().getSequence()) {
    append({info.type == dtl::SES_ADD      ? DiffLine::Origin::kNewer
            : info.type == dtl::SES_DELETE ? DiffLine::Origin::kOlder
                                           : DiffLine::Origin::kBoth,
            text});
  }
  lines.insert(lines.end(), added.begin(), added.end());
  return lines;
}

}  // namespace solution
