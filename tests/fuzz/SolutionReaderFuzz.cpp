// Any bytes are either an export or refused with one line, and a refusal leaves the solution alone.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <utility>

#include "sim/solution/SolutionReader.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  sim::Solution solution;
  solution.name = u"before";
  std::string error;
  std::string bytes(reinterpret_cast<const char*>(data), size);
  if (sim::ReadSolutionBytes(std::move(bytes), "a.xml", solution, error)) {
    if (solution.fileName.empty() || !error.empty()) std::abort();
  } else if (solution.name != u"before" || !error.starts_with("a.xml ") || error.find('\n') != error.npos) {
    std::abort();
  }
  return 0;
}
