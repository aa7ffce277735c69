#include "references/Scope.h"

#include "design/Names.h"
#include "export/Xml.h"
#include "formula/MergeText.h"
#include "references/Resolve.h"

namespace solution {

namespace {

const Element* TableOf(const Design& design, XmlNode occurrence) {
  const auto target = Resolve(design, occurrence);
  return target && target->element != nullptr ? target->element->table : nullptr;
}

}  // namespace

FormulaScope ScopeOf(const Design& design, const Element& element, XmlNode node) {
  FormulaScope scope;
  if (element.kind == Kind::kField) scope.table = element.parent;
  if (const XmlNode reference = node.parent().child("TableOccurrenceReference")) {
    scope.table = TableOf(design, reference);
  }
  if (element.kind == Kind::kCustomFunction) {
    for (const XmlNode parameter : element.nodes.front().child("ObjectList").children("Parameter")) {
      scope.parameters.push_back(FoldCase(Attribute(parameter, "name")));
    }
  }
  return scope;
}

std::vector<FormulaReference> FindReferences(const Design& design, const Element& element, XmlNode node,
                                             std::string_view text) {
  if (!IsLayoutText(node)) return FindReferences(design, text, ScopeOf(design, element, node));
  const FormulaScope scope{TableOf(design, element.nodes.front().child("TableOccurrenceReference")), {}};
  std::vector<FormulaReference> references;
  for (const std::string_view formula : MergeFormulas(text)) {
    const auto found = FindReferences(design, formula, scope);
    references.insert(references.end(), found.begin(), found.end());
  }
  return references;
}

}  // namespace solution
