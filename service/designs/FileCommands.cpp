// varnix-service search TEXT FILE and export FILE FOLDER.
#include <ostream>
#include <stdexcept>

#include "designs/DesignCommands.h"
#include "designs/OpenDesign.h"
#include "output/DesignFolder.h"
#include "output/Search.h"

namespace service {

bool PrintSearch(const std::string& text, const std::string& file, const Colours& colours, std::ostream& out,
                 std::ostream& warnings) {
  const auto design = OpenDesign(file, warnings);
  const solution::Element* element = nullptr;
  Search(*design, text, [&](const solution::SearchHit& hit) {
    if (hit.element != element) {
      out << (element == nullptr ? "" : "\n") << NamesOf(hit.element->kind).title << ' '
          << colours.Bold(Printable(DisplayName(*hit.element))) << '\n';
      element = hit.element;
    }
    out << "    " << colours.Dim(Printable(hit.property) + ':' + std::to_string(hit.line)) << ' ' << Printable(hit.text)
        << '\n';
  });
  return element != nullptr;
}

void ExportDesign(const std::string& file, const std::string& folder, std::ostream& out, std::ostream& warnings) {
  const auto design = OpenDesign(file, warnings);
  std::string error;
  if (!WriteDesignFolder(*design, folder, error, ShowProgress("writing"))) throw std::runtime_error(error);
  out << design->elements().size() << " elements in " << folder << '\n';
}

}  // namespace service
