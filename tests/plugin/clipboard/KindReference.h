// The kind of an XML text, found by one search after the other, as the rule is worded.
#pragma once

#include <string>
#include <utility>

namespace reference {

inline std::string KindOf(const std::string& xml) {
  const std::pair<const char*, const char*> marks[] = {
      {"<Step", "XMSS"},  {"<Script", "XMSC"}, {"ScriptUUID", "XMSC"}, {"<BaseTable", "XMTB"},
      {"<Table", "XMTB"}, {"<Field", "XMFD"},  {"<ValueList", "XMVL"}, {"<CustomFunction", "XMFN"}};
  for (const auto& [mark, kind] : marks) {
    if (xml.find(mark) != xml.npos) return kind;
  }
  return "XML2";
}

}  // namespace reference
