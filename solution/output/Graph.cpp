#include "output/Graph.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <cstring>

#include "canonical/Naming.h"
#include "design/Key.h"
#include "export/Xml.h"

namespace solution {
namespace {

struct Sign {
  std::string_view type, text;
};
constexpr Sign kSigns[] = {
    {"Equal", "="},       {"NotEqual", "≠"},           {"LessThan", "<"},         {"LessThanOrEqual", "≤"},
    {"GreaterThan", ">"}, {"GreaterThanOrEqual", "≥"}, {"CartesianProduct", "×"},
};

std::string SignOf(XmlNode predicate) {
  const std::string_view type = Attribute(predicate, "type");
  const auto sign =
      std::find_if(std::begin(kSigns), std::end(kSigns), [type](const Sign& known) { return known.type == type; });
  return std::string(sign == std::end(kSigns) ? type : sign->text);
}

std::string FieldIn(const Design& design, XmlNode side) {
  const auto target = Resolve(design, side.child("FieldReference"));
  return target ? TargetName(design, *target, NameOnly) : std::string();
}

std::int64_t Number(XmlNode node, const char* attribute) {
  return NumberIn<std::int32_t>(Attribute(node, attribute), 0);
}

std::string Color(const std::array<std::int64_t, 3>& parts) {
  std::string color = "#";
  for (const std::int64_t part : parts) {
    constexpr char kDigits[] = "0123456789abcdef";
    const auto value = static_cast<std::size_t>(std::clamp<std::int64_t>(part, 0, 255));
    color += kDigits[value / 16];
    color += kDigits[value % 16];
  }
  return color;
}

std::string ColorOf(XmlNode occurrence) {
  const XmlNode color = occurrence.child("Color");
  return color ? Color({Number(color, "red"), Number(color, "green"), Number(color, "blue")}) : std::string();
}

// A note has a style instead: "background-color: rgba(52.549%,80.3922%,30.1961%,1);".
std::string BackgroundOf(XmlNode note) {
  constexpr std::string_view kProperty = "background-color: rgba(";
  const std::string style = Text(note.child("LocalCSS"));
  const auto found = style.find(kProperty);
  if (found == std::string::npos) return {};
  std::array<std::int64_t, 3> parts{};
  const char* at = style.c_str() + found + kProperty.size();
  for (std::int64_t& part : parts) {
    char* end = nullptr;
    const double percent = std::strtod(at, &end);
    part = percent > 0 ? std::lround(std::min(percent, 100.0) * 2.55) : 0;
    at = end + std::strspn(end, "%,");
  }
  return Color(parts);
}

Box BoxIn(XmlNode node) {
  const XmlNode bounds = node.child("CoordRect") ? node.child("CoordRect") : node.child("Bounds");
  const std::int64_t x = Number(bounds, "left"), y = Number(bounds, "top");
  return {x, y, Number(bounds, "right") - x, Number(bounds, "bottom") - y, {}};
}

std::string ShownText(XmlNode node) {
  if (IsLayoutText(node)) return WithLineFeeds(Text(node));
  std::string text;
  for (const XmlNode child : node.children()) text += ShownText(child);
  return text;
}

}  // namespace

std::string SideOf(const Design& design, const Element& relationship, const char* side) {
  const XmlNode reference = relationship.nodes.front().child(side).child("TableOccurrenceReference");
  const auto target = Resolve(design, reference);
  return target && target->element != nullptr ? KeyOf(design, *target->element) : std::string();
}

Box BoxOf(const Element& occurrence) {
  Box box = BoxIn(occurrence.nodes.front());
  box.color = ColorOf(occurrence.nodes.front());
  return box;
}

Source SourceOf(const Element& occurrence) {
  if (occurrence.table != nullptr) return {std::string(occurrence.table->name), ""};
  const XmlNode source = occurrence.nodes.front().child("BaseTableSourceReference");
  const std::string_view table = Attribute(source.child("BaseTableReference"), "name"),
                         file = Attribute(source.child("ExternalDataSourceReference"), "name");
  return {std::string(table), std::string(file.empty() ? "another file" : file)};
}

bool IsCollapsed(const Element& occurrence) {
  const XmlNode node = occurrence.nodes.front();
  return Attribute(node, node.attribute("View") ? "View" : "viewState") == "Collapse";
}

std::vector<Note> NotesOf(const Design& design) {
  std::vector<Note> notes;
  const XmlNode catalog = design.document().Part("Structure").child("TableOccurrenceCatalog");
  const XmlNode list = catalog.child("TableOccurrenceNotes").child("ObjectList");
  for (const XmlNode object : list.children("LayoutObject")) {
    notes.push_back({ShownText(object), BoxIn(object)});
    notes.back().box.color = BackgroundOf(object);
  }
  return notes;
}

std::vector<Predicate> PredicatesOf(const Design& design, const Element& relationship) {
  std::vector<Predicate> predicates;
  for (const XmlNode node : relationship.nodes.front().child("JoinPredicateList").children("JoinPredicate")) {
    predicates.push_back(
        {FieldIn(design, node.child("LeftField")), SignOf(node), FieldIn(design, node.child("RightField"))});
  }
  return predicates;
}

}  // namespace solution
