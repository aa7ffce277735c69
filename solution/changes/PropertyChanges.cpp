#include "changes/PropertyChanges.h"

#include <algorithm>
#include <functional>
#include <map>

namespace solution {
namespace {

/// The properties of one element, by name or for a whole layout object.
class Values {
 public:
  explicit Values(const std::vector<Property>& properties) {
    for (const Property& property : properties) {
      byName_[property.name].push_back(&property);
      if (!property.object.empty()) byObject_[property.object].push_back(&property);
    }
  }

  const std::vector<const Property*>& Named(const std::string& name) const { return Find(byName_, name); }
  bool HasObject(const std::string& object) const { return byObject_.count(object) != 0; }

  std::string ObjectText(const std::string& object) const {
    std::string text;
    for (const Property* property : Find(byObject_, object)) {
      text += property->name.substr(object.size() + 1) + ": " + property->value + '\n';
    }
    return text;
  }

 private:
  using Map = std::map<std::string, std::vector<const Property*>>;
  static const std::vector<const Property*>& Find(const Map& map, const std::string& name) {
    static const std::vector<const Property*> kNone;
    const auto found = map.find(name);
    return found == map.end() ? kNone : found->second;
  }

  Map byName_, byObject_;
};

bool Equal(const std::vector<const Property*>& a, const std::vector<const Property*>& b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](const Property* x, const Property* y) { return x->compared() == y->compared(); });
}

std::string Joined(const std::vector<const Property*>& properties) {
  std::string text;
  for (const Property* property : properties) text += (text.empty() ? "" : "\n") + property->value;
  return text;
}

}  // namespace

PropertyComparer::PropertyComparer(const Design& older, const Design& newer, const Matching& matching,
                                   bool versionsDiffer)
    : older_(older), newer_(newer), matching_(matching), versionsDiffer_(versionsDiffer) {}

const PropertyComparer::Schemas& PropertyComparer::SchemasOf(const Design& design, Kind kind,
                                                             std::array<Schemas, kKindCount>& known) {
  Schemas& schemas = known[static_cast<std::size_t>(kind)];
  if (!schemas.empty()) return schemas;
  for (const Element& element : design.elements()) {
    if (element.kind != kind) continue;
    for (Property& property : PropertiesOf(design, element)) schemas.insert(std::move(property.schema));
  }
  return schemas;
}

bool PropertyComparer::IsKnownToBoth(const Property& property, Kind kind) const {
  return !versionsDiffer_ || (SchemasOf(older_, kind, olderSchemas_).count(property.schema) != 0 &&
                              SchemasOf(newer_, kind, newerSchemas_).count(property.schema) != 0);
}

std::vector<PropertyChange> PropertyComparer::Compare(const Element& older, const Element& newer) const {
  const auto newName = [this](const Element& element) {
    const Element* other = matching_.NewerOf(element);
    return NameOnly(other == nullptr ? element : *other);
  };
  const auto newerList = PropertiesOf(newer_, newer), olderList = PropertiesOf(older_, older),
             renamedList = PropertiesOf(older_, older, newName);
  const Values now(newerList), before(olderList), renamed(renamedList);

  std::vector<PropertyChange> changes;
  std::set<std::string> done;
  const auto compare = [&](const Property& property) {
    const std::string& object = property.object;
    const bool isWholeObject = !object.empty() && now.HasObject(object) != before.HasObject(object);
    const std::string& name = isWholeObject ? object : property.name;
    if (!done.insert(name).second || !IsKnownToBoth(property, newer.kind)) return;
    if (isWholeObject) {
      changes.push_back({name, renamed.ObjectText(object), now.ObjectText(object)});
    } else if (!Equal(renamed.Named(name), now.Named(name)) && !Equal(before.Named(name), now.Named(name))) {
      changes.push_back({name, Joined(renamed.Named(name)), Joined(now.Named(name))});
    }
  };
  for (const Property& property : newerList) compare(property);
  for (const Property& property : olderList) compare(property);
  return changes;
}

}  // namespace solution
