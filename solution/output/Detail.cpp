#include "output/Detail.h"

#include <algorithm>
#include <iterator>

#include "canonical/Naming.h"
#include "canonical/Words.h"
#include "export/Xml.h"
#include "output/Graph.h"

namespace solution {
namespace {

using std::operator""sv;

std::string Count(XmlNode list, const char* member, const char* noun) {
  const auto members = list.children(member);
  std::size_t count = 0;
  for (auto at = members.begin(); at != members.end(); ++at) ++count;
  return Counted(count, noun);
}

std::string FirstLine(XmlNode node) {
  std::string text = Text(node);
  return text.erase(std::min(text.find_first_of("\r\n"), text.size()));
}

XmlNode Node(const Element& element) { return element.nodes.empty() ? XmlNode() : element.nodes.front(); }

// The first child of this name in any part of the definition.
XmlNode Child(const Element& element, const char* name) {
  for (const XmlNode node : element.nodes) {
    if (const XmlNode child = node.child(name)) return child;
  }
  return {};
}

std::string OfFile(const Design& design, const Element&) {
  std::string detail = "FileMaker " + std::string(design.document().Attribute("Source"));
  Append(detail, design.document().Attribute("locale"));
  return detail;
}

std::string OfTable(const Design& design, const Element& table) { return Counted(design.CountFields(&table), "field"); }

std::string OfField(const Design&, const Element& field) {
  const XmlNode node = Node(field);
  const std::string_view type = Attribute(node, "datatype"), kind = Attribute(node, "fieldtype");
  std::string detail(type == "Binary" ? "Container" : type);
  if (kind == "Calculated") Append(detail, "calculated");
  if (kind == "Summary") {
    const std::string operation = Words(Attribute(Child(field, "SummaryInfo"), "operation"));
    Append(detail, operation.empty() ? "summary" : "summary: " + operation);
  }
  const XmlNode storage = node.child("Storage");
  if (Attribute(storage, "global") == "True"sv) Append(detail, "global");
  if (Attribute(storage, "storeCalculationResults") == "False"sv) Append(detail, "unstored");
  if (const int repetitions = storage.attribute("maxRepetitions").AsInt(1); repetitions > 1) {
    Append(detail, Counted(static_cast<std::size_t>(repetitions), "repetition"));
  }
  const std::string entry = Words(Attribute(node.child("AutoEnter"), "type"));
  if (!entry.empty()) Append(detail, "auto-enter " + entry);
  return detail;
}

std::string OfOccurrence(const Design&, const Element& occurrence) {
  auto [detail, file] = SourceOf(occurrence);
  if (!file.empty()) Append(detail, "in " + file);
  return detail;
}

std::string OfRelationship(const Design& design, const Element& relationship) {
  std::string detail;
  for (const auto& [left, sign, right] : PredicatesOf(design, relationship)) {
    Append(detail, left + ' ' + sign + ' ' + right, " and ");
  }
  return detail;
}

std::string OfLayout(const Design&, const Element& layout) {
  return std::string(Attribute(Node(layout).child("TableOccurrenceReference"), "name"));
}

std::string OfScript(const Design&, const Element& script) {
  std::string detail = Count(Child(script, "ObjectList"), "Step", "step");
  if (HasFullAccess(script)) Append(detail, "full access");
  return detail;
}

std::string OfValueList(const Design& design, const Element& list) {
  if (const XmlNode values = Child(list, "CustomValues")) {
    const std::string text = Text(values.child("Text"));
    const auto isEnd = [](char c) { return c == '\r' || c == '\n'; };
    const auto ends = static_cast<std::size_t>(std::count_if(text.begin(), text.end(), isEnd));
    return Counted(text.empty() ? 0 : 1 + ends, "value");
  }
  const auto field = Resolve(design, Child(list, "Field").child("PrimaryField").child("FieldReference"));
  if (field) return "from " + TargetName(design, *field, NameOnly);
  return Attribute(Child(list, "Source"), "value") == "External"sv ? "from another file" : "";
}

std::string OfFunction(const Design&, const Element& function) {
  std::string parameters;
  for (const XmlNode parameter : Child(function, "ObjectList").children("Parameter")) {
    Append(parameters, Attribute(parameter, "name"), " ; ");
  }
  return parameters;
}

std::string OfMenu(const Design&, const Element& menu) {
  return Count(Node(menu).child("MenuItemList"), "CustomMenuItem", "item");
}

std::string OfMenuSet(const Design&, const Element& set) {
  return Count(Node(set).child("CustomMenuList"), "CustomMenuReference", "menu");
}

std::string OfTheme(const Design&, const Element& theme) { return std::string(Attribute(Node(theme), "Display")); }

std::string OfAccount(const Design&, const Element& account) {
  std::string detail(Attribute(Node(account).child("PrivilegeSetReference"), "name"));
  if (Attribute(Node(account), "enable") == "False"sv) Append(detail, "disabled");
  return detail;
}

std::string OfPrivilege(const Design&, const Element& privilege) {
  return FirstLine(Node(privilege).child("Description"));
}

std::string OfDataSource(const Design&, const Element& source) {
  return FirstLine(Node(source).child("File").child("UniversalPathList"));
}

std::string Nothing(const Design&, const Element&) { return {}; }

using Describe = std::string (*)(const Design& design, const Element& element);
constexpr Describe kDetails[] = {  // in the order of Kind
    OfFile,      OfTable,      OfField, OfOccurrence, OfRelationship, OfLayout,  OfScript,
    OfValueList, OfFunction,   OfMenu,  OfMenuSet,    OfTheme,        OfAccount, OfPrivilege,
    OfPrivilege, OfDataSource, Nothing, Nothing,      Nothing,        Nothing};
static_assert(std::size(kDetails) == kKindCount);

}  // namespace

std::string ParentPath(const Element& element) {
  std::string path;
  for (const Element* at = element.parent; at != nullptr; at = at->parent) {
    path = std::string(at->name) + (path.empty() ? "" : "/") + path;
  }
  return path;
}

std::string DetailOf(const Design& design, const Element& element) {
  return kDetails[static_cast<std::size_t>(element.kind)](design, element);
}

bool HasFullAccess(const Element& script) {
  return Attribute(Node(script).child("Options"), "runwithfullaccess") == "True"sv;
}

}  // namespace solution
