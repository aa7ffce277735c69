// The tools of an assistant.
#pragma once

#include <span>
#include <stdexcept>
#include <string>

#include "mcp/Call.h"

namespace service::mcp {

/// Why a tool failed, worded so that the assistant or its user knows what to do.
class ToolError : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

struct ToolResult {
  Json structured;        ///< conforms to the tool's output schema
  std::string text = {};  ///< for clients that show no structured results; empty: `structured` as JSON
  std::string more = {};  ///< how to get the rest, if `text` is not complete
};

/// What a tool changes.
enum class Effect { kNone, kReplacesClipboard };

struct Tool {
  const char* name;
  const char* title;
  const char* description;
  const char* input;   ///< the arguments, in the form that SchemaOf expects
  const char* output;  ///< the structured result, in the same form
  Effect effect;
  /// `arguments` conform to the schema. Called on any thread; throws ToolError, Cancelled or any std::exception.
  ToolResult (*run)(Call& call, const Value& arguments);
};

/// The tools for designs in the data folder, which need no running service.
std::span<const Tool> DesignTools();

/// The tools that use FileMaker, through the service.
std::span<const Tool> FileMakerTools();

/// The tools for the clips that the service has stored.
std::span<const Tool> ClipTools();

/// Every tool as tools/list describes it.
const Json& ToolList();

/// The result of tools/call. Failures of the tool are results too; throws ProtocolError for an unknown tool, and
/// Cancelled.
Json CallTool(Call& call, const Value& params);

}  // namespace service::mcp
