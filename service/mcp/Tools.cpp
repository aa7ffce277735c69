#include "mcp/Tools.h"

#include <algorithm>
#include <string_view>

#include "http/Agents.h"
#include "mcp/Arguments.h"
#include "mcp/Schema.h"

namespace service::mcp {
namespace {

Json Describe(const Tool& tool) {
  const bool isReadOnly = tool.effect == Effect::kNone;
  return {{"name", tool.name},
          {"title", tool.title},
          {"description", tool.description},
          {"inputSchema", SchemaOf(tool.input)},
          {"outputSchema", SchemaOf(tool.output)},
          {"annotations",
           {{"title", tool.title},
            {"readOnlyHint", isReadOnly},
            {"destructiveHint", !isReadOnly},
            {"idempotentHint", true},
            {"openWorldHint", false}}}};
}

const Tool& Find(const std::string& name) {
  for (const auto& tools : {FileMakerTools(), DesignTools(), ClipTools()}) {
    const auto found = std::find_if(tools.begin(), tools.end(), [&](const Tool& tool) { return name == tool.name; });
    if (found != tools.end()) return *found;
  }
  throw ProtocolError(kInvalidParams, "unknown tool: " + name.substr(0, 60));
}

Json TextBlock(std::string text) { return {{"type", "text"}, {"text", std::move(text)}}; }

Json Failure(const std::string& reason) { return {{"content", Json::array({TextBlock(reason)})}, {"isError", true}}; }

Json Success(ToolResult result) {
  if (result.text.empty()) result.text = result.structured.dump(-1, ' ', false, Json::error_handler_t::replace);
  Json content = Json::array({TextBlock(std::move(result.text))});
  if (!result.more.empty()) content.push_back(TextBlock(std::move(result.more)));
  return {{"content", std::move(content)}, {"structuredContent", std::move(result.structured)}, {"isError", false}};
}

// Assistants send null for what they leave out.
void RemoveNulls(Value& arguments) {
  for (auto member = arguments.begin(); member != arguments.end();) {
    member = member->is_null() ? arguments.erase(member) : std::next(member);
  }
}

}  // namespace

const Json& ToolList() {
  static const Json list = [] {
    Json tools = Json::array();
    for (const auto& topic : {FileMakerTools(), DesignTools(), ClipTools()}) {
      for (const Tool& tool : topic) tools.push_back(Describe(tool));
    }
    return tools;
  }();
  return list;
}

Json CallTool(Call& call, const Value& params) {
  if (!params.value("name", Value()).is_string()) throw ProtocolError(kInvalidParams, "the tool's name is missing");
  const Tool& tool = Find(params["name"].get<std::string>());
  Value arguments = params.value("arguments", Value::object());
  if (arguments.is_null()) arguments = Value::object();
  if (!arguments.is_object()) throw ProtocolError(kInvalidParams, "arguments must be an object");
  RemoveNulls(arguments);
  if (const std::string fault = CheckArguments(SchemaOf(tool.input), arguments); !fault.empty()) {
    return Failure(fault);
  }
  try {
    if (KeptAgentMode(call.options().Folder()) == AgentMode::kOff) throw ToolError(kAgentsAreOff);
    return Success(tool.run(call, arguments));
  } catch (const Cancelled&) {
    throw;
  } catch (const std::exception& error) {
    return Failure(error.what());
  }
}

}  // namespace service::mcp
