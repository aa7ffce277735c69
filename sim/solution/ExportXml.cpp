// The recurring pieces of an export's XML.
#include "solution/ExportXml.h"

#include <charconv>
#include <set>
#include <string_view>

#include "calc/Unicode.h"

namespace sim::xml {

std::u16string Text(solution::XmlAttribute attribute) { return calc::ToUtf16(attribute.value()); }

std::u16string Text(solution::XmlNode element) {
  std::string text;
  for (const solution::XmlNode child : element.children()) text += child.value();
  return calc::ToUtf16(text);
}

bool IsTrue(solution::XmlAttribute attribute) { return attribute.value() == std::string_view("True"); }

int Id(solution::XmlNode element) {
  const std::string_view text = element.attribute("id").value();
  int id = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), id);
  if (error == std::errc() && end == text.data() + text.size() && id >= 0) return id;
  throw Damage{element, "a " + std::string(element.name()) + " without a usable id"};
}

int ReferencedId(solution::XmlNode element, const char* reference) {
  if (const solution::XmlNode child = element.child(reference)) return Id(child);
  throw Damage{element, "a " + std::string(element.name()) + " without a " + reference};
}

std::vector<solution::XmlNode> Entries(solution::XmlNode list, const char* name) {
  std::vector<solution::XmlNode> entries;
  std::set<int> ids;
  for (const solution::XmlNode entry : list.children(name)) {
    if (!ids.insert(Id(entry)).second) throw Damage{entry, "a second " + std::string(name) + " with the same id"};
    entries.push_back(entry);
  }
  return entries;
}

std::u16string Name(solution::XmlNode element) { return Text(element.attribute("name")); }

std::u16string Formula(solution::XmlNode element) {
  while (const solution::XmlNode calculation = element.child("Calculation")) element = calculation;
  return Text(element.child("Text"));
}

ListItem Kind(solution::XmlNode entry) {
  const solution::XmlAttribute folder = entry.attribute("isFolder");
  if (IsTrue(folder)) return ListItem::kFolder;
  if (folder.value() == std::string_view("Marker")) return ListItem::kFolderEnd;
  return IsTrue(entry.attribute("isSeparatorItem")) ? ListItem::kSeparator : ListItem::kItem;
}

}  // namespace sim::xml
