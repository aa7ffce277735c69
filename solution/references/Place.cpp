#include "references/Place.h"

#include <algorithm>
#include <string_view>
#include <vector>

#include "export/Xml.h"

namespace solution {
namespace {

constexpr std::string_view kWrappers[] = {"ObjectList", "Calculation", "Text",          "PartsList",
                                          "Part",       "Definition",  "ScriptTriggers"};

std::string Number(XmlNode node) { return std::to_string(node.attribute("index").AsInt() + 1); }

std::string ObjectPlace(XmlNode object) {
  const std::string_view name = Attribute(object, "name");
  const std::string type(Attribute(object, "type"));
  return type + ' ' + (name.empty() ? std::string(Attribute(object, "id")) : '"' + std::string(name) + '"');
}

// Empty for a node that is only a part of the path.
std::string Landmark(XmlNode node) {
  const std::string_view name = node.name();
  if (name == "Step") return "step " + Number(node) + ' ' + std::string(Attribute(node, "name"));
  if (name == "LayoutObject" || name == "LayoutObjectReference" || name == "PopoverPanel") return ObjectPlace(node);
  if (name == "ScriptTrigger") return "trigger " + std::string(Attribute(node, "action"));
  if (name == "CustomMenuItem") return "item " + Number(node);
  return {};
}

std::string Join(const std::vector<std::string>& parts, const char* separator) {
  std::string joined;
  for (auto part = parts.rbegin(); part != parts.rend(); ++part) {
    if (!joined.empty()) joined += separator;
    joined += *part;
  }
  return joined;
}

}  // namespace

std::string PlaceOf(XmlNode node, XmlNode root) {
  std::vector<std::string> landmarks, path;
  for (XmlNode at = node; at && at != root; at = at.parent()) {
    if (std::string landmark = Landmark(at); !landmark.empty()) {
      landmarks.push_back(std::move(landmark));
    } else if (at != node && std::find(std::begin(kWrappers), std::end(kWrappers), at.name()) == std::end(kWrappers)) {
      path.emplace_back(at.name());
    }
  }
  if (!landmarks.empty()) return Join(landmarks, ", ");
  if (path.empty()) return std::string(IsFormula(node) ? "Calculation" : node.name());
  return Join(path, "/");
}

}  // namespace solution
