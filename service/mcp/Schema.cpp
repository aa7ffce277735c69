#include "mcp/Schema.h"

namespace service::mcp {
namespace {

constexpr char kShared[] = R"json({
  "@design": {"type": "string", "description": "id of a design, from designs; or the name of a file, for its newest design"},
  "@kind": {"type": "string", "description": "only elements of this kind",
    "enum": ["file", "table", "field", "tableOccurrence", "relationship", "layout", "script", "valueList", "customFunction",
             "customMenu", "customMenuSet", "theme", "account", "privilegeSet", "extendedPrivilege", "externalDataSource",
             "baseDirectory", "folder"]},
  "@element": {"type": "string", "description": "name, UUID or key of the element; a field as Table::Field"},
  "@limit": {"type": "integer", "minimum": 1, "maximum": 5000, "description": "how many rows at most; 200 by default"},
  "@offset": {"type": "integer", "minimum": 0, "description": "how many rows to skip: nextOffset of the previous answer"},
  "@nextOffset": {"type": "integer", "description": "there are more rows from here on"},
  "@waitSeconds": {"type": "integer", "minimum": 1, "maximum": 600,
    "description": "how long to wait for FileMaker; 50 by default, because many clients give up after a minute"},
  "@xmlType": {"type": "string", "enum": ["XMSS", "XMSC", "XMFD", "XMTB", "XMFN", "XMVL", "XML2", "XMLO"],
    "description": "XMSS script steps, XMSC scripts and their folders, XMFD fields, XMTB tables, XMFN custom functions, XMVL value lists, XML2 and XMLO layout objects"},
  "@pieceOffset": {"type": "integer", "minimum": 0,
    "description": "where to continue in a long text: nextOffset of the previous answer"},
  "@maxBytes": {"type": "integer", "minimum": 100, "maximum": 1000000,
    "description": "how much of a long text to return; 100000 by default"},
  "@nextPiece": {"type": "integer", "description": "there is more of the text from here on"},
  "@key": {"type": "string", "description": "addresses the element in this design"},
  "@parent": {"type": "string", "description": "its folder or table"}
})json";

Json Members(const Json& members);

Json Type(const Json& type) {
  static const Json shared = Json::parse(kShared);
  if (type.is_array()) return {{"type", "array"}, {"items", Type(type.front())}};
  if (type.is_object()) return type.contains("type") ? type : Members(type);
  const std::string& name = type.get_ref<const std::string&>();
  if (name.front() == '@') return shared.at(name);
  return {{"type", name == "text" ? "string" : name}};
}

Json Members(const Json& members) {
  Json properties = Json::object(), required = Json::array();
  for (const auto& [name, type] : members.items()) {
    const bool isRequired = name.back() == '!';
    const std::string plain = name.substr(0, name.size() - (isRequired ? 1 : 0));
    if (isRequired) required.push_back(plain);
    properties[plain] = Type(type);
  }
  Json schema{{"type", "object"}, {"properties", std::move(properties)}};
  if (!required.empty()) schema["required"] = std::move(required);
  return schema;
}

}  // namespace

Json SchemaOf(const char* members) { return Members(Json::parse(members)); }

}  // namespace service::mcp
