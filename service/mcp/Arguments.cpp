#include "mcp/Arguments.h"

#include <algorithm>

namespace service::mcp {
namespace {

std::string JoinedTexts(const Value& texts) {
  std::string joined;
  for (const auto& text : texts) joined += (joined.empty() ? "" : ", ") + text.get<std::string>();
  return joined;
}

std::string CheckNumber(const std::string& name, const Value& property, const Value& value) {
  const auto lowest = property.value("minimum", INT64_MIN), highest = property.value("maximum", INT64_MAX);
  // A number above the largest signed one is unsigned.
  const bool isSigned =
      value.is_number_integer() && (!value.is_number_unsigned() || value.get<std::uint64_t>() <= INT64_MAX);
  if (isSigned && value.get<std::int64_t>() >= lowest && value.get<std::int64_t>() <= highest) return "";
  return name + " must be a whole number from " + std::to_string(lowest) + " to " + std::to_string(highest);
}

std::string CheckText(const std::string& name, const Value& property, const Value& value) {
  if (!value.is_string() && !value.is_number_integer()) return name + " must be a string";
  if (!property.contains("enum")) return "";
  const auto& allowed = property["enum"];
  if (std::find(allowed.begin(), allowed.end(), value) != allowed.end()) return "";
  return name + " must be one of " + JoinedTexts(allowed);
}

std::string CheckValue(const std::string& name, const Value& property, const Value& value) {
  const std::string& type = property.at("type").get_ref<const std::string&>();
  if (type == "integer") return CheckNumber(name, property, value);
  if (type == "boolean") return value.is_boolean() ? "" : name + " must be true or false";
  return CheckText(name, property, value);
}

}  // namespace

std::string CheckArguments(const Value& schema, const Value& arguments) {
  const Value& properties = schema.at("properties");
  for (const auto& [name, value] : arguments.items()) {
    if (!properties.contains(name)) {
      std::string names;
      for (const auto& known : properties.items()) names += (names.empty() ? "" : ", ") + known.key();
      return "unknown argument " + name.substr(0, 60) + "; " +
             (names.empty() ? "this tool takes none" : "this tool takes " + names);
    }
    if (std::string fault = CheckValue(name, properties[name], value); !fault.empty()) return fault;
  }
  for (const auto& name : schema.value("required", Value::array())) {
    if (!arguments.contains(name.get<std::string>())) return name.get<std::string>() + " is missing";
  }
  return "";
}

std::string Text(const Value& arguments, const char* name, const char* otherwise) {
  const auto found = arguments.find(name);
  if (found == arguments.end()) return otherwise;
  return found->is_string() ? found->get<std::string>() : found->dump();
}

std::int64_t Number(const Value& arguments, const char* name, std::int64_t otherwise) {
  return arguments.value(name, otherwise);
}

bool Flag(const Value& arguments, const char* name) { return arguments.value(name, false); }

}  // namespace service::mcp
