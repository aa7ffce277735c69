#include "designs/Overview.h"

#include <array>

#include "design/Key.h"
#include "designs/DesignJson.h"
#include "output/Detail.h"
#include "output/Graph.h"

namespace service {
namespace {

using Json = nlohmann::ordered_json;
using solution::Design;
using solution::Element;
using solution::Kind;

void AddBox(const solution::Box& box, Json& json) {
  json["x"] = box.x;
  json["y"] = box.y;
  json["width"] = box.width;
  json["height"] = box.height;
  json["color"] = box.color.empty() ? Json(nullptr) : Json(box.color);
}

Json DescribeOccurrence(const Design& design, const Element& occurrence) {
  const auto [table, file] = solution::SourceOf(occurrence);
  Json json = {{"key", KeyOf(design, occurrence)}, {"name", occurrence.name}, {"table", table}, {"dataSource", file}};
  AddBox(BoxOf(occurrence), json);
  json["collapsed"] = IsCollapsed(occurrence);
  return json;
}

Json DescribeRelationship(const Design& design, const Element& relationship) {
  Json predicates = Json::array();
  for (const auto& [left, sign, right] : PredicatesOf(design, relationship)) {
    predicates.push_back({{"left", left}, {"operator", sign}, {"right", right}});
  }
  return {{"key", KeyOf(design, relationship)},
          {"left", SideOf(design, relationship, "LeftTable")},
          {"right", SideOf(design, relationship, "RightTable")},
          {"predicates", std::move(predicates)}};
}

}  // namespace

Json DescribeGraph(const Design& design) {
  Json json = {{"occurrences", Json::array()}, {"relationships", Json::array()}, {"notes", Json::array()}};
  for (const Element& element : design.elements()) {
    if (element.kind == Kind::kTableOccurrence) json["occurrences"].push_back(DescribeOccurrence(design, element));
    if (element.kind == Kind::kRelationship) json["relationships"].push_back(DescribeRelationship(design, element));
  }
  for (const auto& note : NotesOf(design)) {
    json["notes"].push_back({{"text", note.text}});
    AddBox(note.box, json["notes"].back());
  }
  return json;
}

Json DescribeReport(const OpenedDesign& opened) {
  const Design& design = opened.design();
  Json json = {
      {"counts", Json::array()}, {"unused", Json::array()}, {"broken", Json::array()}, {"fullAccess", Json::array()}};
  std::array<std::size_t, solution::kKindCount> counts{};
  for (const Element& element : design.elements()) {
    ++counts[static_cast<std::size_t>(element.kind)];
    const bool isPowerful = element.kind == Kind::kScript && HasFullAccess(element);
    if (isPowerful) json["fullAccess"].push_back(DescribeElementIn(design, element));
  }
  for (std::size_t i = 0; i < counts.size(); ++i) {
    const auto& names = NamesOf(static_cast<Kind>(i));
    if (counts[i] > 0) json["counts"].push_back({{"kind", names.word}, {"plural", names.plural}, {"count", counts[i]}});
  }
  for (const Element* element : opened.references().Unused(design)) {
    json["unused"].push_back(DescribeElementIn(design, *element));
  }
  for (const auto* reference : opened.references().Select({}, true)) {
    json["broken"].push_back(DescribeReferenceIn(design, *reference));
  }
  return json;
}

}  // namespace service
