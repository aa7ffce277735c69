#include "canonical/Flatten.h"

#include <cstdint>
#include <cstdio>
#include <string_view>

#include "Contains.h"
#include "canonical/Steps.h"
#include "export/Xml.h"

namespace solution {
namespace {

using std::operator""sv;

// Counted or computed by FileMaker, or part of the name that a node gets in a path.
constexpr std::string_view kComputedAttributes[] = {"hash", "membercount", "UUID"};
// Nodes whose index only repeats their order.
constexpr std::string_view kNumbered[] = {"Step", "CustomMenuItem", "FindRequest", "Map"};
constexpr std::string_view kNameAttributes[] = {"id", "name"};
// Nodes that only wrap others.
constexpr std::string_view kWrappers[] = {"ObjectList", "PartsList", "MenuItemList", "StreamList", "INSECURE_TEXT"};
// Nodes whose attributes make one value.
constexpr std::string_view kShapes[] = {"Bounds", "CoordRect", "Color"};
constexpr std::size_t kLongestStream = 80;

// An account has its name in an element instead of an attribute; a custom function's display form repeats its name and
// parameters.
bool RepeatsName(XmlNode node) {
  const std::string_view name = node.name();
  return (name == "AccountName" && node.parent().parent().name() == "Account"sv) ||
         (name == "Display" && node.parent().name() == "CustomFunction"sv);
}

bool IsSecret(std::string_view name) {
  return name.find("PASSWORD") != std::string_view::npos || name == "PasswordEncrypted";
}

// FNV-1a, only to show that binary data differ.
std::string Digest(std::string_view data) {
  std::uint64_t hash = 14695981039346656037u;
  for (const char c : data) hash = (hash ^ static_cast<unsigned char>(c)) * 1099511628211u;
  char text[17];
  std::snprintf(text, sizeof text, "%016llx", static_cast<unsigned long long>(hash));
  return text;
}

bool IsLayoutObject(std::string_view name) {
  return name == "LayoutObject" || name == "LayoutObjectReference" || name == "PopoverPanel";
}

XmlNode ReferenceIn(XmlNode node) {
  for (const XmlNode child : node.children()) {
    if (child.name().ends_with("Reference")) return child;
  }
  return {};
}

struct NaturalKey {
  std::string_view node;
  const char* attribute;
};
constexpr NaturalKey kNaturalKeys[] = {
    {"ScriptTrigger", "action"}, {"Parameter", "type"}, {"Stream", "name"}, {"Part", "type"}};

// A list may have more members in another export.
bool IsInList(XmlNode node) {
  const std::string_view parent = node.parent().name();
  const bool isList = parent.ends_with("List") && parent != "List" && parent != "ValueList";
  return isList || parent == "ParameterValues" || node.next(node.name()) || node.previous(node.name());
}

std::string AllText(XmlNode node) {
  std::string text(node.value());
  for (const XmlNode child : node.children()) text += AllText(child);
  return text;
}

/// Where the flattener is in the tree.
struct Path {
  std::string name, object, schema;

  Path At(std::string_view attribute) const {
    const std::string text(attribute);
    return {name.empty() ? text : name + '/' + text, object, schema + '@' + text};
  }
};

class Flattener {
 public:
  Flattener(const Design& design, const Element& element, const Naming& naming, std::vector<Property>& properties)
      : design_(design), element_(element), naming_(naming), properties_(properties) {}

  void Flatten(XmlNode node, const Path& path) {
    if (IsBookkeeping(node) || RepeatsName(node)) return;
    if (IsFormula(node) || IsLayoutText(node)) return Add(path, FormulaText(design_, element_, node, naming_));
    if (IsSecret(node.name())) return Add(path, "(hidden)", AllText(node));
    const bool isRoot = path.schema.empty();
    if (node.name() == "Step"sv && !isRoot) return AddStep(node, path);
    if (Contains(kShapes, node.name()) && !node.first_child()) return Add(path, Shape(node));
    const auto target = isRoot ? std::nullopt : Resolve(design_, node);
    // Other catalogs describe an element below a reference to it.
    const bool isOwnName = target && target->element == &element_ && path.name == node.name();
    if (target && !isOwnName) Add(path, TargetName(design_, *target, naming_));
    AddAttributes(node, path, isRoot || target.has_value());
    const Path parent = isOwnName ? Path{"", path.object, path.schema} : path;
    for (const XmlNode child : node.children()) {
      if (!child.IsElement()) {
        AddText(node, path, child.value());
      } else if (!target || !child.name().ends_with("Reference")) {
        Flatten(child, Below(parent, child));
      }
    }
  }

 private:
  Path Below(const Path& parent, XmlNode child) const {
    Path path = parent;
    const std::string_view name = child.name();
    path.schema += '/';
    path.schema += name;
    if (Contains(kWrappers, name) || name == "Calculation" || IsFormula(child)) return path;
    if (IsLayoutObject(name)) {  // found by its id alone, wherever it is nested
      path.name = path.object = std::string(Attribute(child, "type")) + ' ' + std::string(Attribute(child, "id"));
      path.schema = name;
      return path;
    }
    if (!path.name.empty()) path.name += '/';
    path.name += name;
    if (IsInList(child)) path.name += ' ' + Key(child);
    return path;
  }

  // Siblings with the same name are distinguished by a name attribute, by what they refer to, or by their number.
  std::string Key(XmlNode node) const {
    for (const NaturalKey& key : kNaturalKeys) {
      const std::string_view value = Attribute(node, key.attribute);
      if (key.node == node.name() && !value.empty()) return std::string(value);
    }
    auto target = Resolve(design_, node);
    if (!target) target = Resolve(design_, ReferenceIn(node));
    if (target) return TargetName(design_, *target, naming_);
    int number = 1;
    for (XmlNode other = node.previous(node.name()); other; other = other.previous(node.name())) ++number;
    return std::to_string(number);
  }

  void Add(const Path& path, std::string value, std::string key = {}) {
    if (value.empty()) return;
    properties_.push_back(
        {path.name.empty() ? "Calculation" : path.name, std::move(value), std::move(key), path.object, path.schema});
  }

  void AddAttributes(XmlNode node, const Path& path, bool isNamed) {
    const bool isObject = IsLayoutObject(node.name());
    for (const auto attribute : node.attributes()) {
      const std::string_view name = attribute.name();
      if (Contains(kComputedAttributes, name) || (isNamed && Contains(kNameAttributes, name))) continue;
      if (isObject && name == "id") continue;
      if (name == "index" && Contains(kNumbered, node.name())) continue;
      Add(path.At(name), std::string(attribute.value()));
    }
  }

  // What a button or menu item does.
  void AddStep(XmlNode node, const Path& path) {
    StepLine line = LineOf(design_, element_, node, naming_);
    Add(path, std::move(line.text), std::move(line.details));
  }

  void AddText(XmlNode node, const Path& path, std::string_view text) {
    if (node.name() == "Stream"sv && text.size() > kLongestStream) {
      Add(path, std::to_string(text.size()) + " characters, digest " + Digest(text));
    } else {
      Add(path, std::string(text));
    }
  }

  static std::string Shape(XmlNode node) {
    std::string shape;
    for (const auto attribute : node.attributes()) {
      shape.append(shape.empty() ? "" : ", ").append(attribute.name()).append(" ").append(attribute.value());
    }
    return shape;
  }

  const Design& design_;
  const Element& element_;
  const Naming& naming_;
  std::vector<Property>& properties_;
};

}  // namespace

void Flatten(const Design& design, const Element& element, XmlNode node, const Naming& naming,
             std::vector<Property>& properties) {
  Flattener(design, element, naming, properties).Flatten(node, {});
}

}  // namespace solution
