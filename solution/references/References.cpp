#include "references/References.h"

#include <set>
#include <tuple>

#include "export/Xml.h"
#include "formula/Placeholders.h"
#include "references/Place.h"
#include "references/Resolve.h"
#include "references/Scope.h"

namespace solution {
namespace {

using pugi::xml_node;
using std::operator""sv;

/// Collects the references of one element after the other.
class Collector {
 public:
  explicit Collector(const Design& design) : design_(design) {}

  void Collect(const Element& element) {
    from_ = &element;
    seen_.clear();
    for (const xml_node node : element.nodes) {
      root_ = node;
      Walk(node);
    }
  }

  std::vector<Reference> Take() { return std::move(references_); }

 private:
  void Walk(xml_node node) {
    if (IsBookkeeping(node) || IsUnusedImport(node)) return;
    if (const auto target = Resolve(design_, node); target && !IsOwnName(node, *target)) AddTarget(node, *target);
    if (IsFormula(node)) return AddFormula(node, Text(node));
    if (node.name() == "Data"sv) return AddLayoutCalculations(node);
    for (const xml_node child : node.children()) {
      if (child.type() == pugi::node_element) Walk(child);
    }
  }

  // A field that an import step lists but does not fill.
  static bool IsUnusedImport(xml_node node) { return node.name() == "Map"sv && Attribute(node, "kind") == "1"; }

  // The details of an element in another catalog start with a reference to it.
  bool IsOwnName(xml_node node, const Target& target) const {
    return target.element == from_ && node.parent() == root_ && root_ != from_->nodes.front();
  }

  void AddTarget(xml_node node, const Target& target) {
    std::string name(target.name);
    if (target.element != nullptr) {
      name = DisplayName(*target.element);
    } else if (!target.occurrence.empty()) {
      name = std::string(target.occurrence) + "::" + name;
    }
    Add(node, target.kind, target.element, std::string(target.uuid), std::move(name));
  }

  void AddFormula(xml_node node, const std::string& formula) {
    for (const FormulaReference& found : FindReferences(design_, formula, ScopeOf(design_, *from_, node))) {
      std::string name(found.text);
      if (found.target != nullptr) {
        name = DisplayName(*found.target);
      } else if (!found.occurrence.empty()) {
        name = std::string(found.occurrence) + "::" + name;
      }
      Add(node, found.kind, found.target, {}, std::move(name));
    }
  }

  // Text on a layout may contain formulas: <<\u0192:1 + 1>>. Plain merge fields are also listed as references.
  void AddLayoutCalculations(xml_node node) {
    constexpr std::string_view kStart = "<<\u0192:";
    const std::string text = Text(node);
    for (auto start = text.find(kStart); start != text.npos; start = text.find(kStart, start + 1)) {
      const auto end = text.find(">>", start);
      AddFormula(node, text.substr(start + kStart.size(), end - start - kStart.size()));
    }
  }

  void Add(xml_node node, Kind kind, const Element* to, std::string uuid, std::string name) {
    if (to != nullptr) uuid = to->uuid;
    std::string place = PlaceOf(node, root_);
    if (!seen_.emplace(kind, uuid, name, place).second) return;
    references_.push_back({from_, kind, to, std::move(uuid), std::move(name), std::move(place)});
  }

  const Design& design_;
  const Element* from_ = nullptr;
  xml_node root_;
  std::set<std::tuple<Kind, std::string, std::string, std::string>> seen_;
  std::vector<Reference> references_;
};

}  // namespace

bool IsBroken(const Reference& reference) {
  return reference.to == nullptr && IsPlaceholder(reference.toName);
}

std::vector<Reference> FindReferences(const Design& design) {
  Collector collector(design);
  for (const Element& element : design.elements()) collector.Collect(element);
  return collector.Take();
}

}  // namespace solution
