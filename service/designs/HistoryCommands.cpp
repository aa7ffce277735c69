// varnix-service designs, label, and search in the store.
#include <iomanip>
#include <ostream>
#include <stdexcept>

#include "designs/DesignCommands.h"
#include "designs/DesignJson.h"
#include "designs/OpenDesign.h"

namespace service {
namespace {

void PrintDesign(const StoredDesign& design, const Colours& colours, std::ostream& out) {
  out << std::setw(6) << design.id << "  " << design.receivedAt << std::setw(10) << design.bytes << " bytes  "
      << colours.Bold(LineForTerminal(design.fileName));
  if (!design.version.empty()) out << "  " << LineForTerminal(design.version);
  if (design.label) out << "  " << colours.Green(LineForTerminal(*design.label));
  if (design.note) out << "  " << LineForTerminal(*design.note);
  if (design.problem) out << "  " << colours.Red("not readable: " + LineForTerminal(*design.problem));
  out << '\n';
}

}  // namespace

void PrintDesigns(const Options& options, const Colours& colours, std::ostream& out, std::ostream&) {
  for (const StoredDesign& design : OpenHistory(options.Folder()).List(options.design)) {
    if (options.json) {
      out << DescribeDesign(design).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace) << '\n';
    } else {
      PrintDesign(design, colours, out);
    }
  }
}

void PrintHistorySearch(const Options& options, const Colours& colours, std::ostream& out, std::ostream&) {
  DesignStore history = OpenHistory(options.Folder());
  std::string heading;
  history.Search(options.text, options.design, [&](const StoredHit& hit) {
    const std::string before = heading;
    heading = hit.fileName + ' ' + hit.kind + ' ' + hit.name + "  designs " + std::to_string(hit.firstDesign) + " to " +
              std::to_string(hit.lastDesign);
    if (options.json) {
      out << DescribeHit(hit).dump() << '\n';
      return;
    }
    if (heading != before) {
      out << (before.empty() ? "" : "\n") << colours.Bold(LineForTerminal(heading)) << '\n';
    }
    out << "    " << colours.Dim(LineForTerminal(hit.property) + ':' + std::to_string(hit.line)) << ' '
        << LineForTerminal(hit.text) << '\n';
  });
  if (heading.empty()) throw std::runtime_error("no design contains " + options.text);
}

void LabelDesign(const Options& options, const Colours&, std::ostream&, std::ostream&) {
  DesignStore history = OpenHistory(options.Folder());
  if (!history.Describe(std::stoll(options.design), options.label, options.note)) {
    throw std::runtime_error("there is no design " + options.design);
  }
}

}  // namespace service
