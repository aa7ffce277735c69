#include "canonical/Naming.h"

#include "export/Xml.h"
#include "references/Scope.h"

namespace solution {

std::string NameOnly(const Element& element) {
  return element.kind == Kind::kField ? std::string(element.name) : DisplayName(element);
}

std::string TargetName(const Design& design, const Target& target, const Naming& naming) {
  std::string name = target.element == nullptr ? std::string(target.name) : naming(*target.element);
  if (target.occurrence.empty()) return name;
  const Element* occurrence = design.Find(Kind::kTableOccurrence, target.occurrence);
  return (occurrence == nullptr ? std::string(target.occurrence) : naming(*occurrence)) + "::" + name;
}

std::string FormulaText(const Design& design, const Element& element, XmlNode node, const Naming& naming) {
  const std::string formula = Text(node);
  std::string result;
  std::size_t copied = 0;
  for (const FormulaReference& reference : FindReferences(design, element, node, formula)) {
    if (reference.target == nullptr) continue;
    const auto start = static_cast<std::size_t>(reference.text.data() - formula.data());
    result += formula.substr(copied, start - copied);
    result += naming(*reference.target);
    copied = start + reference.text.size();
  }
  return WithLineFeeds(result + formula.substr(copied));
}

}  // namespace solution
