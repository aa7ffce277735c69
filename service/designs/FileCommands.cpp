// varnix-service search TEXT FILE and export DESIGN FOLDER.
#include <ostream>
#include <stdexcept>

#include "designs/DesignCommands.h"
#include "designs/DesignJson.h"
#include "designs/OpenDesign.h"
#include "output/DesignFolder.h"

namespace service {

void PrintSearch(const Options& options, const Colours& colours, std::ostream& out, std::ostream& warnings) {
  const auto design = OpenDesign(options.design, options.Folder(), warnings);
  const solution::Element* element = nullptr;
  Search(*design, options.text, [&](const solution::SearchHit& hit) {
    const bool isFirst = element == nullptr, isSame = hit.element == element;
    element = hit.element;
    if (options.json) {
      out << DescribeHit(hit).dump() << '\n';
      return;
    }
    if (!isSame) {
      out << (isFirst ? "" : "\n") << NamesOf(element->kind).title << ' '
          << colours.Bold(LineForTerminal(DisplayName(*element))) << '\n';
    }
    out << "    " << colours.Dim(LineForTerminal(hit.property) + ':' + std::to_string(hit.line)) << ' '
        << LineForTerminal(hit.text) << '\n';
  });
  if (element == nullptr) throw std::runtime_error(options.design + " does not contain " + options.text);
}

void ExportDesign(const Options& options, const Colours&, std::ostream& out, std::ostream& warnings) {
  const auto design = OpenDesign(options.design, options.Folder(), warnings);
  std::string error;
  if (!WriteDesignFolder(*design, options.folder, error, ShowProgress("writing"))) throw std::runtime_error(error);
  out << design->elements().size() << " elements in " << options.folder << '\n';
}

}  // namespace service
