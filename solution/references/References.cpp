#include "references/References.h"

#include <set>
#include <tuple>

#include "export/Xml.h"
#include "formula/Placeholders.h"
#include "references/OtherFiles.h"
#include "references/Place.h"
#include "references/Resolve.h"
#include "references/Scope.h"

namespace solution {
namespace {

using std::operator""sv;

/// Collects the references of one element after the other.
class Collector {
 public:
  Collector(const Design& design, const std::vector<const Design*>& others)
      : design_(design), others_(design, others) {}

  void Collect(const Element& element) {
    from_ = &element;
    seen_.clear();
    for (const XmlNode node : element.nodes) {
      root_ = node;
      Walk(node);
    }
  }

  std::vector<Reference> Take() { return std::move(references_); }

 private:
  void Walk(XmlNode node) {
    if (IsBookkeeping(node) || IsUnusedImport(node)) return;
    if (const auto target = Resolve(design_, node); target && !IsOwnName(node, *target)) AddTarget(node, *target);
    if (IsFormula(node) || IsLayoutText(node)) return AddFormula(node, Text(node));
    for (const XmlNode child : node.children()) {
      if (child.IsElement()) Walk(child);
    }
  }

  // A field that an import step lists but does not fill.
  static bool IsUnusedImport(XmlNode node) { return node.name() == "Map"sv && Attribute(node, "kind") == "1"; }

  // The details of an element in another catalog start with a reference to it.
  bool IsOwnName(XmlNode node, const Target& target) const {
    return target.element == from_ && node.parent() == root_ && root_ != from_->nodes.front();
  }

  void AddTarget(XmlNode node, const Target& target) {
    // A step's reference to its own file.
    if (target.kind == Kind::kExternalDataSource && target.element == nullptr && !IsPlaceholder(target.name)) return;
    const Element* element = target.element;
    if (element == nullptr) element = others_.Find(target.kind, target.uuid);
    Add(node, target.kind, element, target.uuid, Qualified(target.occurrence, target.name));
  }

  static std::string Qualified(std::string_view occurrence, std::string_view name) {
    return occurrence.empty() ? std::string(name) : std::string(occurrence) + "::" + std::string(name);
  }

  void AddFormula(XmlNode node, const std::string& formula) {
    for (const FormulaReference& found : FindReferences(design_, *from_, node, formula)) {
      const Element* element = found.target;
      if (element == nullptr && found.kind == Kind::kField) element = others_.FindField(found.occurrence, found.text);
      Add(node, found.kind, element, {}, Qualified(found.occurrence, found.text));
    }
  }

  // `uuid` and `name`, as written, are for elements that were not found.
  void Add(XmlNode node, Kind kind, const Element* to, std::string_view uuid, std::string name) {
    Reference reference{from_, kind, to, std::string(to == nullptr ? uuid : to->uuid), std::move(name), {}};
    if (to != nullptr) reference.toName = DisplayName(*to);
    reference.place = PlaceOf(node, root_);
    if (seen_.emplace(kind, reference.toUuid, reference.toName, reference.place).second) {
      references_.push_back(std::move(reference));
    }
  }

  const Design& design_;
  const OtherFiles others_;
  const Element* from_ = nullptr;
  XmlNode root_;
  std::set<std::tuple<Kind, std::string, std::string, std::string>> seen_;
  std::vector<Reference> references_;
};

}  // namespace

bool IsBroken(const Reference& reference) { return reference.to == nullptr && IsPlaceholder(reference.toName); }

std::vector<Reference> FindReferences(const Design& design, const std::vector<const Design*>& others) {
  Collector collector(design, others);
  for (const Element& element : design.elements()) collector.Collect(element);
  return collector.Take();
}

}  // namespace solution
