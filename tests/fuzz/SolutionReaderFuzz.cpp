// Any bytes are either an export or refused with one line, and a refusal leaves the solution unchanged.
#include "fuzz/Fuzz.h"
#include "solution/SolutionReader.h"

void Try(const std::string& input) {
  sim::Solution solution;
  solution.name = u"before";
  std::string error;
  if (sim::ReadSolutionBytes(std::string(input), "a.xml", solution, error)) {
    Check(!solution.fileName.empty() && error.empty());
  } else {
    Check(solution.name == u"before" && error.starts_with("a.xml ") && error.find('\n') == error.npos);
  }
}
