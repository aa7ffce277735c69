// What an assistant can have done.
#pragma once

#include <span>
#include <stdexcept>
#include <string>

#include "mcp/Call.h"

namespace service::mcp {

/// Why a tool could not do what was asked, in words that help the assistant or its user to go on.
class ToolError : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

struct ToolResult {
  Json structured;        ///< as the tool's output schema demands
  std::string text = {};  ///< for clients that show no structured results; empty: `structured` as JSON
  std::string more = {};  ///< what to do about what is missing in `text`
};

/// What using the tool changes.
enum class Effect { kNone, kReplacesClipboard };

struct Tool {
  const char* name;
  const char* title;
  const char* description;
  const char* input;   ///< the arguments, as SchemaOf takes them
  const char* output;  ///< the structured result, likewise
  Effect effect;
  /// `arguments` suit the schema. Runs on any thread; throws ToolError, Cancelled or any std::exception.
  ToolResult (*run)(Call& call, const Value& arguments);
};

/// On the designs in the data folder; they need no running service.
std::span<const Tool> DesignTools();

/// What FileMaker carries out, by way of the service.
std::span<const Tool> FileMakerTools();

/// On the clips that the service has kept.
std::span<const Tool> ClipTools();

/// Every tool as tools/list describes it.
const Json& ToolList();

/// The result of tools/call. Failures of the tool are results too; throws ProtocolError for an unknown tool, and
/// Cancelled.
Json CallTool(Call& call, const Value& params);

}  // namespace service::mcp
