#include "references/Scope.h"

#include "design/Names.h"
#include "export/Xml.h"
#include "references/Resolve.h"

namespace solution {

FormulaScope ScopeOf(const Design& design, const Element& element, pugi::xml_node node) {
  FormulaScope scope;
  if (element.kind == Kind::kField) scope.table = element.parent;
  if (const pugi::xml_node reference = node.parent().child("TableOccurrenceReference")) {
    const auto occurrence = Resolve(design, reference);
    if (occurrence && occurrence->element != nullptr) scope.table = occurrence->element->table;
  }
  if (element.kind == Kind::kCustomFunction) {
    for (const pugi::xml_node parameter : element.nodes.front().child("ObjectList").children("Parameter")) {
      scope.parameters.push_back(FoldCase(Attribute(parameter, "name")));
    }
  }
  return scope;
}

}  // namespace solution
