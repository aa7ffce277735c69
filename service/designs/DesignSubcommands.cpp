// varnix-service changes, references, search, export, designs and label.
#include <iostream>

#include "Subcommands.h"
#include "designs/DesignCommands.h"
#include "designs/OpenDesign.h"

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
ExitStatus RunSearch(const Options& options) {
  return Run(IsPath(options.design) ? PrintSearch : PrintHistorySearch, options);
}
ExitStatus RunDesigns(const Options& options) { return Run(PrintDesigns, options); }
ExitStatus RunLabel(const Options& options) { return Run(LabelDesign, options); }
ExitStatus RunExport(const Options& options) { return Run(ExportDesign, options); }

}  // namespace service
