// Layouts, value lists and custom functions of an export.
#include <map>
#include <string_view>

#include "solution/Catalogs.h"
#include "solution/ExportXml.h"

namespace sim {
namespace {

using std::operator""sv;

Layout ReadLayout(pugi::xml_node element) {
  Layout layout;
  layout.id = xml::Id(element);
  layout.name = xml::Name(element);
  layout.kind = xml::Kind(element);
  const pugi::xml_node occurrence = element.child("TableOccurrenceReference");
  if (occurrence) layout.occurrenceId = xml::Id(occurrence);
  return layout;
}

/// Tools that convert an export turn the carriage returns between values into line feeds.
std::u16string CustomValues(pugi::xml_node element) {
  if (element.child("Source").attribute("value").value() != "Custom"sv) return {};
  std::u16string values;
  char16_t previous = 0;
  for (const char16_t unit : xml::Text(element.child("CustomValues").child("Text"))) {
    const bool secondOfPair = unit == u'\n' && previous == u'\r';
    if (!secondOfPair) values += unit == u'\n' ? u'\r' : unit;
    previous = unit;
  }
  return values;
}

/// Versions 2.2.2.0 and 2.2.3.0 keep the contents in a catalog of their own.
void ReadValueLists(pugi::xml_node design, Solution& solution) {
  std::map<int, pugi::xml_node> options;
  for (const pugi::xml_node element : design.child("OptionsForValueLists").children("ValueList")) {
    options[xml::ReferencedId(element, "ValueListReference")] = element;
  }
  for (const pugi::xml_node element : xml::Entries(design.child("ValueListCatalog"), "ValueList")) {
    ValueList& list = solution.valueLists.emplace_back();
    list.id = xml::Id(element);
    list.name = xml::Name(element);
    list.customValues = CustomValues(element.child("CustomValues") ? element : options[list.id]);
  }
}

/// A version that knows no folders of custom functions shows the end of one as a function of this name.
bool IsFunction(pugi::xml_node element) {
  return xml::Kind(element) == ListItem::kItem && element.attribute("name").value() != "--"sv;
}

/// Up to version 2.2.3.0 the formulas stand in a catalog of their own.
void ReadCustomFunctions(pugi::xml_node design, Solution& solution) {
  std::map<int, pugi::xml_node> formulas;
  const pugi::xml_node calculations = design.child("CalcsForCustomFunctions").child("ObjectList");
  for (const pugi::xml_node element : calculations.children("CustomFunctionCalc")) {
    formulas[xml::ReferencedId(element, "CustomFunctionReference")] = element;
  }
  const pugi::xml_node functions = design.child("CustomFunctionsCatalog").child("ObjectList");
  for (const pugi::xml_node element : xml::Entries(functions, "CustomFunction")) {
    if (!IsFunction(element)) continue;
    calc::CustomFunction& function = solution.customFunctions.emplace_back();
    function.name = xml::Name(element);
    for (const pugi::xml_node parameter : element.child("ObjectList").children("Parameter")) {
      function.parameters.push_back(xml::Name(parameter));
    }
    function.formula = xml::Formula(element.child("Calculation") ? element : formulas[xml::Id(element)]);
  }
}

}  // namespace

void ReadLists(pugi::xml_node design, Solution& solution) {
  for (const pugi::xml_node element : xml::Entries(design.child("LayoutCatalog"), "Layout")) {
    solution.layouts.push_back(ReadLayout(element));
  }
  ReadValueLists(design, solution);
  ReadCustomFunctions(design, solution);
}

}  // namespace sim
