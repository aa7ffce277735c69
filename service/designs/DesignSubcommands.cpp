// varnix-service changes, references, search and export.
#include <iostream>

#include "Subcommands.h"
#include "designs/DesignCommands.h"

namespace service {
namespace {

using Print = void(const Options&, const Colours&, std::ostream& out, std::ostream& warnings);

ExitStatus Run(Print& print, const Options& options) {
  print(options, Colours::OfOutput(), std::cout, std::cerr);
  if (!std::cout.flush()) throw std::runtime_error("the output cannot be written");
  return kDone;
}

}  // namespace

ExitStatus RunChanges(const Options& options) { return Run(PrintChanges, options); }
ExitStatus RunReferences(const Options& options) { return Run(PrintReferences, options); }
ExitStatus RunSearch(const Options& options) { return Run(PrintSearch, options); }
ExitStatus RunExport(const Options& options) { return Run(ExportDesign, options); }

}  // namespace service
