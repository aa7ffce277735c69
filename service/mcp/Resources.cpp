#include "mcp/Resources.h"

#include <algorithm>

#include "canonical/Properties.h"
#include "designs/OpenDesign.h"
#include "http/Agents.h"
#include "http/Http.h"
#include "http/Parameters.h"
#include "mcp/StoredDesigns.h"

namespace service::mcp {
namespace {

constexpr std::string_view kDesigns = "varnix://designs/";
constexpr std::string_view kElements = "/elements/";
constexpr std::size_t kPage = 100;

constexpr char kTemplates[] = R"json([
  {"uriTemplate": "varnix://designs/{id}", "name": "design", "title": "Design of a FileMaker file", "mimeType": "text/plain",
   "description": "Overview of a stored design: its elements with their keys, by kind. id is the design's id, or the name of its file for the newest one."},
  {"uriTemplate": "varnix://designs/{id}/elements/{key}", "name": "element", "title": "Element of a design",
   "mimeType": "text/plain",
   "description": "The full definition of one element as readable text: a script with its steps, a field with its formula. key is the element's key or name."}
])json";

void CheckAllowed(const Call& call) {
  if (KeptAgentMode(call.options().Folder()) == AgentMode::kOff) throw ProtocolError(kInternalError, kAgentsAreOff);
}

Json Describe(const StoredDesign& design) {
  const std::string id = std::to_string(design.id);
  return {{"uri", std::string(kDesigns) + id},
          {"name", "design-" + id},
          {"title", design.fileName + ", " + design.receivedAt + (design.label ? ", " + *design.label : "")},
          {"description", "Design of the FileMaker file " + design.fileName},
          {"mimeType", "text/plain"},
          {"annotations", {{"lastModified", design.receivedAt}}}};
}

// The cursor is the number of designs before the page.
std::size_t PageBegin(const Value& params, std::size_t total) {
  if (!params.contains("cursor")) return 0;
  const Value& cursor = params["cursor"];
  const auto begin = cursor.is_string() ? WholeNumber(cursor.get_ref<const std::string&>()) : std::nullopt;
  if (!begin || *begin < 0 || static_cast<std::size_t>(*begin) > total) {
    throw ProtocolError(kInvalidParams, "unknown cursor");
  }
  return static_cast<std::size_t>(*begin);
}

std::string Overview(const solution::Design& design) {
  std::string text = std::string(design.fileName()) + ", saved by FileMaker " +
                     std::string(design.document().Attribute("Source")) + '\n';
  std::string_view kind;
  for (const auto& element : design.elements()) {
    const auto plural = NamesOf(element.kind).plural;
    if (plural != kind) (text += '\n') += std::string(kind = plural) + '\n';
    const Json summary = Summary(design, element);
    text += "  " + summary["name"].get<std::string>();
    if (const std::string detail = summary["detail"]; !detail.empty()) text += "  (" + detail + ')';
    text += "  " + summary["key"].get<std::string>() + '\n';
  }
  return text;
}

// The text of the resource at `uri`.
std::string TextAt(const Call& call, std::string_view uri) {
  if (!uri.starts_with(kDesigns))
    throw std::runtime_error("the only resources are designs, varnix://designs/{id}, and their elements");
  const std::string_view rest = uri.substr(kDesigns.size());
  const auto end = rest.find(kElements);
  const auto opened = OpenStored(call, PercentDecoded(rest.substr(0, end)));
  if (end == std::string_view::npos) return Overview(opened->design());
  std::string text;
  for (const auto* element : Named(opened->design(), PercentDecoded(rest.substr(end + kElements.size())), "")) {
    text += CanonicalText(opened->design(), *element) + '\n';
  }
  return text;
}

}  // namespace

Json ListResources(Call& call, const Value& params) {
  CheckAllowed(call);
  auto designs = OpenHistory(call.options().Folder()).List("");
  std::erase_if(designs, [](const StoredDesign& design) { return design.problem.has_value(); });
  std::reverse(designs.begin(), designs.end());
  const std::size_t begin = PageBegin(params, designs.size()), end = std::min(begin + kPage, designs.size());
  Json resources = Json::array();
  for (std::size_t i = begin; i < end; ++i) resources.push_back(Describe(designs[i]));
  Json result{{"resources", std::move(resources)}};
  if (end < designs.size()) result["nextCursor"] = std::to_string(end);
  return result;
}

Json ReadResource(Call& call, const Value& params) {
  CheckAllowed(call);
  const Value uri = params.value("uri", Value());
  if (!uri.is_string()) throw ProtocolError(kInvalidParams, "uri is missing");
  try {
    const std::string text = TextAt(call, uri.get_ref<const std::string&>());
    return {{"contents", Json::array({{{"uri", uri}, {"mimeType", "text/plain"}, {"text", text}}})}};
  } catch (const std::runtime_error& error) {
    throw ProtocolError(kResourceNotFound, error.what(), {{"uri", uri}});
  }
}

const Json& ResourceTemplates() {
  static const Json templates = Json::parse(kTemplates);
  return templates;
}

}  // namespace service::mcp
