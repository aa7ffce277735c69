#include "mcp/Methods.h"

#include <algorithm>

#include "mcp/Resources.h"
#include "mcp/Tools.h"

namespace service::mcp {
namespace {

Json Capabilities() { return {{"tools", Json::object()}, {"resources", Json::object()}}; }

Json Ping(Call&, const Value&) { return Json::object(); }

Json Discover(Call&, const Value&) {
  return {{"supportedVersions", {kModernVersion}}, {"capabilities", Capabilities()}, {"instructions", Instructions()}};
}

// Lists that fit into one answer have no further pages.
void RefuseCursor(const Value& params) {
  if (params.contains("cursor")) throw ProtocolError(kInvalidParams, "unknown cursor: there is only one page");
}

Json ListTemplates(Call&, const Value& params) {
  RefuseCursor(params);
  return {{"resourceTemplates", ResourceTemplates()}};
}

Json ListTools(Call&, const Value& params) {
  RefuseCursor(params);
  return {{"tools", ToolList()}};
}

// "initialize" is not among these: it changes the session.
constexpr Method kMethods[] = {
    {"ping", Era::kSession, true, Caching::kNone, Ping},
    {"server/discover", Era::kModern, true, Caching::kLong, Discover},
    {"tools/list", Era::kBoth, true, Caching::kLong, ListTools},
    {"tools/call", Era::kBoth, false, Caching::kNone, CallTool},
    {"resources/templates/list", Era::kBoth, true, Caching::kLong, ListTemplates},
    {"resources/list", Era::kBoth, false, Caching::kNotAtAll, ListResources},
    {"resources/read", Era::kBoth, false, Caching::kNotAtAll, ReadResource},
};

}  // namespace

const Method& FindMethod(const std::string& name, bool isModern) {
  const auto* found =
      std::find_if(std::begin(kMethods), std::end(kMethods), [&](const Method& method) { return name == method.name; });
  const Era otherEra = isModern ? Era::kSession : Era::kModern;
  if (found == std::end(kMethods) || found->era == otherEra) {
    throw ProtocolError(kMethodNotFound, "method not found: " + name.substr(0, 60));
  }
  return *found;
}

Json ServerInfo() { return {{"name", "varnix"}, {"title", "Varnix for FileMaker"}, {"version", VARNIX_VERSION}}; }

Json Greeting(const std::string& version) {
  const bool isKnown = version == kNewestSessionVersion || version == kOlderSessionVersion;
  return {{"protocolVersion", isKnown ? version : kNewestSessionVersion},
          {"capabilities", Capabilities()},
          {"serverInfo", ServerInfo()},
          {"instructions", Instructions()}};
}

}  // namespace service::mcp
