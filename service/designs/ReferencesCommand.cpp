// varnix-service references FILE.
#include <algorithm>
#include <ostream>
#include <stdexcept>

#include "designs/DesignCommands.h"
#include "designs/DesignJson.h"
#include "designs/OpenDesign.h"
#include "references/ReferenceIndex.h"

namespace service {
namespace {

using solution::Design;
using solution::Element;
using solution::Reference;
using solution::ReferenceIndex;

class Printer {
 public:
  Printer(const Colours& colours, std::ostream& out) : colours_(colours), out_(out) {}

  void References(const std::vector<const Reference*>& references) {
    const Element* from = nullptr;
    for (const Reference* reference : references) {
      if (reference->from != from) Heading(*reference->from);
      from = reference->from;
      Line(NamesOf(reference->toKind).title, reference->toName, reference->place);
    }
  }

  // What an element uses and is used by.
  void Uses(const ReferenceIndex& index, const Element& element) {
    Heading(element);
    Section("used by", index.UsedBy(element), [this](const Reference& reference) {
      Line(NamesOf(reference.from->kind).title, DisplayName(*reference.from), reference.place);
    });
    Section("uses", index.Uses(element), [this](const Reference& reference) {
      Line(NamesOf(reference.toKind).title, reference.toName, reference.place);
    });
    if (element.kind == solution::Kind::kScript) Calls(index.CallChain(element));
  }

  void Elements(const std::vector<const Element*>& elements) {
    std::string_view kind;
    for (const Element* element : elements) {
      const std::string_view plural = NamesOf(element->kind).plural;
      if (plural != kind) out_ << (kind.empty() ? "" : "\n") << colours_.Bold(plural) << '\n';
      kind = plural;
      out_ << "  " << LineForTerminal(DisplayName(*element)) << '\n';
    }
  }

 private:
  void Heading(const Element& element) {
    out_ << (isFirst_ ? "" : "\n") << NamesOf(element.kind).title << ' '
         << colours_.Bold(LineForTerminal(DisplayName(element))) << '\n';
    isFirst_ = false;
  }

  void Line(std::string_view kind, std::string_view name, std::string_view place) {
    out_ << "    " << kind << ' ' << LineForTerminal(name) << "  " << colours_.Dim(LineForTerminal(place)) << '\n';
  }

  template <typename PrintOne>
  void Section(const char* title, const std::vector<const Reference*>& references, PrintOne print) {
    out_ << "  " << colours_.Yellow(title) << (references.empty() ? " nothing" : "") << '\n';
    for (const Reference* reference : references) print(*reference);
  }

  void Calls(const std::vector<ReferenceIndex::Call>& calls) {
    out_ << "  " << colours_.Yellow("performs") << (calls.empty() ? " no script" : "") << '\n';
    for (const ReferenceIndex::Call& call : calls) {
      out_ << std::string(2 + 2 * static_cast<std::size_t>(call.depth), ' ') << LineForTerminal(call.script->name)
           << (call.isRepeated ? colours_.Dim(" (see above)") : "") << '\n';
    }
  }

  const Colours& colours_;
  std::ostream& out_;
  bool isFirst_ = true;
};

void PrintUnused(const Design& design, const ReferenceIndex& index, bool json, const Colours& colours,
                 std::ostream& out) {
  const auto unused = index.Unused(design);
  if (!json) return Printer(colours, out).Elements(unused);
  for (const Element* element : unused) out << DescribeElement(*element).dump() << '\n';
}

std::vector<const Element*> Named(const Design& design, const Options& options) {
  const auto elements = FindElements(design, options.of);
  if (elements.empty()) throw std::runtime_error(options.design + " has no element named " + options.of);
  return elements;
}

}  // namespace

void PrintReferences(const Options& options, const Colours& colours, std::ostream& out, std::ostream& warnings) {
  const auto design = OpenDesign(options.design, options.Folder(), warnings);
  std::vector<std::unique_ptr<const Design>> files;
  std::vector<const Design*> others;
  for (const std::string& path : options.others) {
    files.push_back(OpenDesign(path, options.Folder(), warnings));
    others.push_back(files.back().get());
  }
  const ReferenceIndex index(FindReferences(*design, others));
  if (options.unused) return PrintUnused(*design, index, options.json, colours, out);
  const auto of = options.of.empty() ? std::vector<const Element*>() : Named(*design, options);
  const auto references = index.Select(of, options.broken);
  Printer printer(colours, out);
  if (options.json) {
    for (const Reference* reference : references) out << DescribeReference(*reference).dump() << '\n';
  } else if (of.empty() || options.broken) {
    printer.References(references);
    const auto broken = std::count_if(index.all().begin(), index.all().end(), solution::IsBroken);
    if (broken > 0 && !options.broken) warnings << broken << " broken references are not listed; see --broken\n";
  } else {
    for (const Element* element : of) printer.Uses(index, *element);
  }
}

}  // namespace service
