// The recurring pieces of an export's XML.
#include "solution/ExportXml.h"

#include <charconv>
#include <set>
#include <string_view>

#include "calc/Unicode.h"

namespace sim::xml {

std::u16string Text(pugi::xml_attribute attribute) { return calc::ToUtf16(attribute.value()); }

std::u16string Text(pugi::xml_node element) {
  std::string text;
  for (const pugi::xml_node child : element.children()) text += child.value();
  return calc::ToUtf16(text);
}

bool IsTrue(pugi::xml_attribute attribute) { return attribute.value() == std::string_view("True"); }

int Id(pugi::xml_node element) {
  const std::string_view text = element.attribute("id").value();
  int id = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), id);
  if (error == std::errc() && end == text.data() + text.size() && id >= 0) return id;
  throw Damage{element, "a " + std::string(element.name()) + " without a usable id"};
}

int ReferencedId(pugi::xml_node element, const char* reference) {
  if (const pugi::xml_node child = element.child(reference)) return Id(child);
  throw Damage{element, "a " + std::string(element.name()) + " without a " + reference};
}

std::vector<pugi::xml_node> Entries(pugi::xml_node list, const char* name) {
  std::vector<pugi::xml_node> entries;
  std::set<int> ids;
  for (const pugi::xml_node entry : list.children(name)) {
    if (!ids.insert(Id(entry)).second) throw Damage{entry, "a second " + std::string(name) + " of one id"};
    entries.push_back(entry);
  }
  return entries;
}

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
