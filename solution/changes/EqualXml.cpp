#include "changes/EqualXml.h"

#include <algorithm>
#include <string_view>

#include "export/Xml.h"

namespace solution {
namespace {

using pugi::xml_node;

xml_node SkipBookkeeping(xml_node node) {
  while (node && node.type() == pugi::node_element && IsBookkeeping(node)) node = node.next_sibling();
  return node;
}

bool IsCounted(std::string_view attribute) { return attribute == "hash" || attribute == "membercount"; }

bool HasAttributesOf(xml_node a, xml_node b) {
  return std::all_of(a.attributes_begin(), a.attributes_end(), [b](const auto& attribute) {
    const std::string_view name = attribute.name();
    return IsCounted(name) || (b.attribute(attribute.name()) && Attribute(b, attribute.name()) == attribute.value());
  });
}

bool Equal(xml_node a, xml_node b) {
  if (a.type() != b.type() || std::string_view(a.name()) != b.name() || std::string_view(a.value()) != b.value() ||
      !HasAttributesOf(a, b) || !HasAttributesOf(b, a)) {
    return false;
  }
  xml_node x = SkipBookkeeping(a.first_child()), y = SkipBookkeeping(b.first_child());
  while (x && y) {
    if (!Equal(x, y)) return false;
    x = SkipBookkeeping(x.next_sibling());
    y = SkipBookkeeping(y.next_sibling());
  }
  return !x && !y;
}

}  // namespace

bool EqualXml(const std::vector<xml_node>& a, const std::vector<xml_node>& b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), Equal);
}

}  // namespace solution
