// Designs of the store as JSON, for programs.
#pragma once

#include <nlohmann/json.hpp>

#include "designs/DesignStore.h"

namespace service {

inline nlohmann::ordered_json DescribeDesign(const StoredDesign& design) {
  nlohmann::ordered_json json = {{"id", design.id},
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

inline nlohmann::ordered_json DescribeHit(const StoredHit& hit) {
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

}  // namespace service
