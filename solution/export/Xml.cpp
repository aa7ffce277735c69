#include "export/Xml.h"

#include "Contains.h"

namespace solution {
namespace {

constexpr std::string_view kBookkeeping[] = {"UUID",    "SourceUUID",         "TagList",        "ChunkList",
                                             "DDRREF",  "DisplayCalculation", "StepText",       "PasteIndexList",
                                             "OwnerID", "SortOrder",          "CustomOrderList"};

}  // namespace

std::string Text(pugi::xml_node node) {
  std::string text;
  for (const pugi::xml_node child : node.children()) text += child.value();
  return text;
}

bool IsFormula(pugi::xml_node node) {
  const std::string_view name = node.name();
  if (name == "Text") {
    constexpr std::string_view kOwners[] = {"Calculation", "Tooltip", "Title"};
    return Contains(kOwners, node.parent().name());
  }
  // In custom menus.
  return name == "Calculation" && *node.child_value() != '\0';
}

bool IsLayoutText(pugi::xml_node node) {
  const std::string_view name = node.name(), parent = node.parent().name();
  return (name == "Data" && parent == "StyledText") || (name == "Text" && parent == "CharacterStyle");
}

bool IsBookkeeping(pugi::xml_node node) { return Contains(kBookkeeping, node.name()); }

}  // namespace solution
