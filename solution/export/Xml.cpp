#include "export/Xml.h"

#include "Contains.h"

namespace solution {
namespace {

constexpr std::string_view kBookkeeping[] = {"UUID",    "SourceUUID",         "TagList",        "ChunkList",
                                             "DDRREF",  "DisplayCalculation", "StepText",       "PasteIndexList",
                                             "OwnerID", "SortOrder",          "CustomOrderList"};

}  // namespace

std::string Text(XmlNode node) {
  std::string text;
  for (const XmlNode child : node.children()) text += child.value();
  return text;
}

std::string WithLineFeeds(const std::string& text) {
  std::string result;
  result.reserve(text.size());
  char previous = 0;
  for (const char c : text) {
    if (!(c == '\n' && previous == '\r')) result += c == '\r' ? '\n' : c;
    previous = c;
  }
  return result;
}

bool IsFormula(XmlNode node) {
  const std::string_view name = node.name();
  if (name == "Text") {
    constexpr std::string_view kOwners[] = {"Calculation", "Tooltip", "Title"};
    return Contains(kOwners, node.parent().name());
  }
  // In custom menus.
  return name == "Calculation" && !node.first_text().empty();
}

bool IsLayoutText(XmlNode node) {
  const std::string_view name = node.name(), parent = node.parent().name();
  return (name == "Data" && parent == "StyledText") || (name == "Text" && parent == "CharacterStyle");
}

bool IsBookkeeping(XmlNode node) { return Contains(kBookkeeping, node.name()); }

}  // namespace solution
