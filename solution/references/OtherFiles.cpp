#include "references/OtherFiles.h"

#include "export/Xml.h"

namespace solution {

using std::operator""sv;

OtherFiles::OtherFiles(const Design& design, std::vector<const Design*> others) : others_(std::move(others)) {
  if (others_.empty()) return;
  for (const Element& element : design.elements()) {
    for (const XmlNode node : element.nodes) Learn(node);
  }
}

const Element* OtherFiles::Find(Kind kind, std::string_view uuid) const {
  for (const Design* other : others_) {
    const Element* found = other->Find(uuid);
    if (found != nullptr && found->kind == kind) return found;
  }
  return nullptr;
}

const Element* OtherFiles::FindField(std::string_view occurrence, std::string_view name) const {
  const auto found = tables_.find(occurrence);
  return found == tables_.end() ? nullptr : found->second.design->FindField(found->second.table, name);
}

void OtherFiles::Learn(XmlNode node) {
  if (IsBookkeeping(node)) return;
  if (node.name() == "FieldReference"sv) {
    const std::string_view occurrence = Attribute(node.child("TableOccurrenceReference"), "name");
    for (const Design* other : others_) {
      const Element* field = other->Find(Attribute(node, "UUID"));
      if (field != nullptr && field->kind == Kind::kField && !occurrence.empty()) {
        tables_.try_emplace(occurrence, Table{other, field->parent});
      }
    }
  }
  for (const XmlNode child : node.children()) Learn(child);
}

}  // namespace solution
