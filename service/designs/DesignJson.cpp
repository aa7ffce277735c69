#include "designs/DesignJson.h"

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

Json DescribeElement(const Element& element) {
  return {{"kind", NamesOf(element.kind).word}, {"uuid", element.uuid}, {"name", DisplayName(element)}};
}

}  // namespace service
