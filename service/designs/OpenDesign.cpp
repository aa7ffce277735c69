#include "designs/OpenDesign.h"

#include <ostream>
#include <stdexcept>

#include "Terminal.h"
#include "design/DesignReader.h"

namespace service {

std::unique_ptr<const solution::Design> OpenDesign(const std::string& path, std::ostream& warnings) {
  const auto progress = ShowProgress("reading " + LineForTerminal(path));
  if (progress) progress(0, 1);
  std::string error;
  auto design = solution::ReadDesign(path, error);
  if (progress) progress(1, 1);
  if (design == nullptr) throw std::runtime_error(error);
  for (const std::string& note : design->document().notes) warnings << "warning: " << note << '\n';
  return design;
}

}  // namespace service
