#include "changes/EqualXml.h"

#include <algorithm>
#include <string_view>

#include "export/Xml.h"

namespace solution {
namespace {

XmlNode SkipBookkeeping(XmlNode node) {
  while (node && node.IsElement() && IsBookkeeping(node)) node = node.next();
  return node;
}

bool IsCounted(std::string_view attribute) { return attribute == "hash" || attribute == "membercount"; }

bool HasAttributesOf(XmlNode a, XmlNode b) {
  for (const XmlAttribute attribute : a.attributes()) {
    const XmlAttribute other = b.attribute(attribute.name());
    if (!IsCounted(attribute.name()) && (!other || other.value() != attribute.value())) return false;
  }
  return true;
}

bool Equal(XmlNode a, XmlNode b) {
  if (a.IsElement() != b.IsElement() || a.name() != b.name() || a.value() != b.value() || !HasAttributesOf(a, b) ||
      !HasAttributesOf(b, a)) {
    return false;
  }
  XmlNode x = SkipBookkeeping(a.first_child()), y = SkipBookkeeping(b.first_child());
  while (x && y) {
    if (!Equal(x, y)) return false;
    x = SkipBookkeeping(x.next());
    y = SkipBookkeeping(y.next());
  }
  return !x && !y;
}

}  // namespace

bool EqualXml(const std::vector<XmlNode>& a, const std::vector<XmlNode>& b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), Equal);
}

}  // namespace solution
