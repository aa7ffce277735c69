// The recurring pieces of an export's XML.
#include "sim/solution/ExportXml.h"

#include <string_view>

#include "sim/calc/Unicode.h"

namespace sim::xml {

std::u16string Text(pugi::xml_attribute attribute) { return calc::ToUtf16(attribute.value()); }

std::u16string Text(pugi::xml_node element) {
  std::string text;
  for (const pugi::xml_node child : element.children()) text += child.value();
  return calc::ToUtf16(text);
}

bool IsTrue(pugi::xml_attribute attribute) { return attribute.value() == std::string_view("True"); }

int Id(pugi::xml_node element) { return element.attribute("id").as_int(); }

std::u16string Name(pugi::xml_node element) { return Text(element.attribute("name")); }

std::u16string Formula(pugi::xml_node element) {
  while (const pugi::xml_node calculation = element.child("Calculation")) element = calculation;
  return Text(element.child("Text"));
}

ListItem Kind(pugi::xml_node entry) {
  const pugi::xml_attribute folder = entry.attribute("isFolder");
  if (IsTrue(folder)) return ListItem::kFolder;
  if (folder.value() == std::string_view("Marker")) return ListItem::kFolderEnd;
  return IsTrue(entry.attribute("isSeparatorItem")) ? ListItem::kSeparator : ListItem::kItem;
}

}  // namespace sim::xml
