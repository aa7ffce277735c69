// Layouts, value lists and custom functions of an export.
#include <map>
#include <string_view>

#include "solution/Catalogs.h"
#include "solution/ExportXml.h"

namespace sim {
namespace {

using std::operator""sv;

Layout ReadLayout(solution::XmlNode element) {
  Layout layout;
  layout.id = xml::Id(element);
  layout.name = xml::Name(element);
  layout.kind = xml::Kind(element);
  const solution::XmlNode occurrence = element.child("TableOccurrenceReference");
  if (occurrence) layout.occurrenceId = xml::Id(occurrence);
  return layout;
}

/// Tools that convert an export turn the carriage returns between values into line feeds.
std::u16string CustomValues(solution::XmlNode element) {
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

/// Versions 2.2.2.0 and 2.2.3.0 have the contents in a separate catalog.
void ReadValueLists(solution::XmlNode design, Solution& solution) {
  std::map<int, solution::XmlNode> options;
  for (const solution::XmlNode element : design.child("OptionsForValueLists").children("ValueList")) {
    options[xml::ReferencedId(element, "ValueListReference")] = element;
  }
  for (const solution::XmlNode element : xml::Entries(design.child("ValueListCatalog"), "ValueList")) {
    ValueList& list = solution.valueLists.emplace_back();
    list.id = xml::Id(element);
    list.name = xml::Name(element);
    list.customValues = CustomValues(element.child("CustomValues") ? element : options[list.id]);
  }
}

/// A format without folders of custom functions shows the end of one as a function with this name.
bool IsFunction(solution::XmlNode element) {
  return xml::Kind(element) == ListItem::kItem && element.attribute("name").value() != "--"sv;
}

/// Up to version 2.2.3.0 the formulas are in a separate catalog.
void ReadCustomFunctions(solution::XmlNode design, Solution& solution) {
  std::map<int, solution::XmlNode> formulas;
  const solution::XmlNode calculations = design.child("CalcsForCustomFunctions").child("ObjectList");
  for (const solution::XmlNode element : calculations.children("CustomFunctionCalc")) {
    formulas[xml::ReferencedId(element, "CustomFunctionReference")] = element;
  }
  const solution::XmlNode functions = design.child("CustomFunctionsCatalog").child("ObjectList");
  for (const solution::XmlNode element : xml::Entries(functions, "CustomFunction")) {
    if (!IsFunction(element)) continue;
    calc::CustomFunction& function = solution.customFunctions.emplace_back();
    function.name = xml::Name(element);
    for (const solution::XmlNode parameter : element.child("ObjectList").children("Parameter")) {
      function.parameters.push_back(xml::Name(parameter));
    }
    function.formula = xml::Formula(element.child("Calculation") ? element : formulas[xml::Id(element)]);
  }
}

}  // namespace

void ReadLists(solution::XmlNode design, Solution& solution) {
  for (const solution::XmlNode element : xml::Entries(design.child("LayoutCatalog"), "Layout")) {
    solution.layouts.push_back(ReadLayout(element));
  }
  ReadValueLists(design, solution);
  ReadCustomFunctions(design, solution);
}

}  // namespace sim
