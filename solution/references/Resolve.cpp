#include "references/Resolve.h"

#include <algorithm>

#include "export/Xml.h"

namespace solution {
namespace {

struct ReferenceName {
  std::string_view node;
  Kind kind;
};

constexpr ReferenceName kReferences[] = {
    {"FieldReference", Kind::kField},
    {"TableOccurrenceReference", Kind::kTableOccurrence},
    {"ScriptReference", Kind::kScript},
    {"LayoutReference", Kind::kLayout},
    {"BaseTableReference", Kind::kTable},
    {"ValueListReference", Kind::kValueList},
    {"CustomFunctionReference", Kind::kCustomFunction},
    {"LayoutThemeReference", Kind::kTheme},
    {"ThemeReference", Kind::kTheme},
    {"PrivilegeSetReference", Kind::kPrivilegeSet},
    {"ExtendedPrivilegeReference", Kind::kExtendedPrivilege},
    {"AccountReference", Kind::kAccount},
    {"CustomMenuReference", Kind::kCustomMenu},
    {"CustomMenuSetReference", Kind::kCustomMenuSet},
    {"DataSourceReference", Kind::kExternalDataSource},
    {"ExternalDataSourceReference", Kind::kExternalDataSource},
    {"BaseDirectoryReference", Kind::kBaseDirectory},
};

// A data source next to a reference shows that the element is in that file.
bool IsInOtherFile(XmlNode node) {
  const XmlNode source = node.parent().child("DataSourceReference");
  return source && source != node && source.attribute("id").AsInt() > 0;
}

const Element* TableOfField(const Design& design, XmlNode field) {
  if (const XmlNode table = field.child("BaseTableReference")) {
    return design.Find(Kind::kTable, table.attribute("id").AsInt());
  }
  const XmlNode reference = field.child("TableOccurrenceReference");
  const Element* occurrence = design.Find(Kind::kTableOccurrence, reference.attribute("id").AsInt());
  return occurrence == nullptr ? nullptr : occurrence->table;
}

const Element* FindById(const Design& design, XmlNode node, Kind kind) {
  if (IsInOtherFile(node)) return nullptr;
  const int id = node.attribute("id").AsInt(-1);
  const Element* found =
      kind == Kind::kField ? design.FindField(TableOfField(design, node), id) : design.Find(kind, id);
  // Ids are per file: an element with another name is another file's or a later one.
  return found != nullptr && found->name == Attribute(node, "name") ? found : nullptr;
}

// In custom menus, `<Field table="Occurrence" name="Field"/>` is a reference.
std::optional<Target> ResolveMenuField(const Design& design, XmlNode node) {
  const std::string_view occurrenceName = Attribute(node, "table");
  const std::string_view name = Attribute(node, "name");
  if (occurrenceName.empty() || name.empty()) return std::nullopt;
  const Element* occurrence = design.Find(Kind::kTableOccurrence, occurrenceName);
  const Element* field = occurrence == nullptr ? nullptr : design.FindField(occurrence->table, name);
  return Target{Kind::kField, field, {}, name, occurrenceName};
}

}  // namespace

std::optional<Target> Resolve(const Design& design, XmlNode node) {
  const std::string_view name = node.name();
  if (name == "Field") return ResolveMenuField(design, node);
  if (!name.ends_with("Reference")) return std::nullopt;
  const auto* reference =
      std::find_if(std::begin(kReferences), std::end(kReferences), [name](const auto& r) { return r.node == name; });
  if (reference == std::end(kReferences)) return std::nullopt;
  Target target{reference->kind, nullptr, Attribute(node, "UUID"), Attribute(node, "name"), {}};
  if (target.name.empty() && target.uuid.empty()) return std::nullopt;
  target.occurrence = Attribute(node.child("TableOccurrenceReference"), "name");
  target.element = design.Find(target.uuid);
  if (target.element != nullptr && target.element->kind != target.kind) target.element = nullptr;
  if (target.element == nullptr) target.element = FindById(design, node, target.kind);
  return target;
}

}  // namespace solution
