#include "designs/DesignJson.h"

#include "changes/LineDiff.h"
#include "design/Key.h"
#include "output/Detail.h"

namespace service {

using Json = nlohmann::ordered_json;
using solution::Element;

Json DescribeDesign(const StoredDesign& design) {
  Json json = {{"id", design.id},
               {"fileUuid", design.fileUuid},
               {"fileName", design.fileName},
               {"receivedAt", design.receivedAt},
               {"version", design.version},
               {"bytes", design.bytes}};
  if (design.label) json["label"] = *design.label;
  if (design.note) json["note"] = *design.note;
  if (design.problem) json["problem"] = *design.problem;
  return json;
}

Json DescribeHit(const StoredHit& hit) {
  return {{"firstDesign", hit.firstDesign},
          {"lastDesign", hit.lastDesign},
          {"fileName", hit.fileName},
          {"kind", hit.kind},
          {"uuid", hit.uuid},
          {"name", hit.name},
          {"property", hit.property},
          {"line", hit.line},
          {"text", hit.text}};
}

Json DescribeHit(const solution::SearchHit& hit) {
  Json json = DescribeElement(*hit.element);
  json["property"] = hit.property;
  json["line"] = hit.line;
  json["text"] = hit.text;
  return json;
}

Json DescribeChange(const solution::Change& change) {
  const Element& element = *(change.newer ? change.newer : change.older);
  const std::string name = DisplayName(element);
  const std::string oldName = change.older == nullptr ? "" : DisplayName(*change.older);
  Json json = {{"change", WordOf(change.change)},
               {"kind", NamesOf(element.kind).word},
               {"uuid", element.uuid},
               {"name", name},
               {"oldName", oldName == name ? "" : oldName},
               {"properties", Json::array()}};
  for (const auto& property : change.properties) json["properties"].push_back(property.name);
  return json;
}

Json DescribeReference(const solution::Reference& reference) {
  return {{"fromKind", NamesOf(reference.from->kind).word},
          {"fromUuid", reference.from->uuid},
          {"fromName", DisplayName(*reference.from)},
          {"toKind", NamesOf(reference.toKind).word},
          {"toUuid", reference.toUuid},
          {"toName", reference.toName},
          {"place", reference.place}};
}

namespace {

Json DescribeLine(const solution::DiffLine& line) {
  constexpr const char* kIn[] = {"both", "older", "newer"};
  return {{"in", kIn[static_cast<int>(line.origin)]}, {"text", line.text}};
}

Json DescribeProperty(const solution::PropertyChange& property) {
  Json json = {{"name", property.name}, {"older", property.older}, {"newer", property.newer}};
  if ((property.older + property.newer).find('\n') == std::string::npos) return json;
  json["lines"] = Json::array();
  for (const auto& line : solution::DiffLines(property.older, property.newer)) {
    json["lines"].push_back(DescribeLine(line));
  }
  return json;
}

}  // namespace

Json DescribeElement(const Element& element) {
  return {{"kind", NamesOf(element.kind).word}, {"uuid", element.uuid}, {"name", DisplayName(element)}};
}

Json DescribeElementIn(const solution::Design& design, const Element& element) {
  Json json = {{"key", KeyOf(design, element)}};
  json.update(DescribeElement(element));
  json["id"] = element.id;
  json["parent"] = ParentPath(element);
  json["parentKey"] = element.parent == nullptr ? "" : KeyOf(design, *element.parent);
  json["detail"] = DetailOf(design, element);
  json["modifications"] = element.modifications ? Json(*element.modifications) : Json(nullptr);
  json["user"] = element.user;
  json["account"] = element.account;
  json["time"] = element.time;
  return json;
}

Json DescribeReferenceIn(const solution::Design& design, const solution::Reference& reference) {
  Json json = DescribeReference(reference);
  json["fromKey"] = KeyOf(design, *reference.from);
  json["toKey"] = reference.to == nullptr ? "" : KeyOf(design, *reference.to);
  return json;
}

Json DescribeCall(const solution::Design& design, const solution::ReferenceIndex::Call& call) {
  return {{"depth", call.depth},
          {"key", KeyOf(design, *call.script)},
          {"name", DisplayName(*call.script)},
          {"isRepeated", call.isRepeated}};
}

Json DescribeChangeBetween(const solution::Design& older, const solution::Design& newer,
                           const solution::Change& change) {
  const Element& element = *(change.newer ? change.newer : change.older);
  Json json = DescribeChange(change);
  json["key"] = KeyOf(change.newer ? newer : older, element);
  json["user"] = element.user;
  json["account"] = element.account;
  json["time"] = element.time;
  json["details"] = Json::array();
  for (const auto& property : change.properties) json["details"].push_back(DescribeProperty(property));
  return json;
}

}  // namespace service
