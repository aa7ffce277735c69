#include "design/Design.h"

#include "design/Names.h"

namespace solution {
namespace {

template <typename Map, typename Key>
typename Map::mapped_type Lookup(const Map& map, const Key& key) {
  const auto found = map.find(key);
  return found == map.end() ? nullptr : found->second;
}

std::string_view OccurrenceName(XmlNode side) {
  return side.child("TableOccurrenceReference").attribute("name").value();
}

}  // namespace

const Element* Design::Find(std::string_view uuid) const { return uuid.empty() ? nullptr : Lookup(byUuid_, uuid); }

Element* Design::Find(Kind kind, int id) { return Lookup(kinds_[static_cast<std::size_t>(kind)].byId, id); }

const Element* Design::Find(Kind kind, int id) const { return const_cast<Design*>(this)->Find(kind, id); }

const Element* Design::Find(Kind kind, std::string_view name) const {
  return Lookup(kinds_[static_cast<std::size_t>(kind)].byName, FoldCase(name));
}

Element* Design::FindField(const Element* table, int id) {
  const auto scope = fields_.find(table);
  return scope == fields_.end() ? nullptr : Lookup(scope->second.byId, id);
}

const Element* Design::FindField(const Element* table, int id) const {
  return const_cast<Design*>(this)->FindField(table, id);
}

const Element* Design::FindField(const Element* table, std::string_view name) const {
  const auto scope = fields_.find(table);
  return scope == fields_.end() ? nullptr : Lookup(scope->second.byName, FoldCase(name));
}

std::size_t Design::CountFields(const Element* table) const {
  const auto scope = fields_.find(table);
  return scope == fields_.end() ? 0 : scope->second.byId.size();
}

Element& Design::Add(Element element) {
  Element& added = elements_.emplace_back(std::move(element));
  if (!added.uuid.empty()) byUuid_.emplace(added.uuid, &added);
  Scope& scope = added.kind == Kind::kField ? fields_[added.parent] : kinds_[static_cast<std::size_t>(added.kind)];
  scope.byId.emplace(added.id, &added);
  return added;
}

void Design::IndexNames() {
  for (const Element& element : elements_) {
    Scope& scope =
        element.kind == Kind::kField ? fields_[element.parent] : kinds_[static_cast<std::size_t>(element.kind)];
    scope.byName.emplace(FoldCase(element.name), &element);
  }
}

std::string DisplayName(const Element& element) {
  if (element.kind == Kind::kField) return std::string(element.parent->name) + "::" + std::string(element.name);
  if (element.kind != Kind::kRelationship) return std::string(element.name);
  const XmlNode node = element.nodes.front();
  return std::string(OccurrenceName(node.child("LeftTable"))) + " <-> " +
         std::string(OccurrenceName(node.child("RightTable")));
}

}  // namespace solution
