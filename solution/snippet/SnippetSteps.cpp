#include "snippet/SnippetSteps.h"

#include <algorithm>
#include <iterator>
#include <string_view>

#include "Contains.h"
#include "canonical/Words.h"
#include "export/Xml.h"

namespace solution {
namespace {

using std::operator""sv;

enum StepId {
  kPerformScript = 1,
  kSaveAsXml = 3,
  kPause = 62,
  kGoToRelatedRecord = 74,
  kCommitRecords = 75,
  kNewWindow = 122,
  kSetVariable = 141,
  kPerformScriptOnServer = 164,
};
constexpr int kAnyStep = 0;
constexpr std::size_t kLongestValue = 64 << 10;

enum Order { kWhatFirst, kThenHow, kOptionsLast };

// How a part of a step is shown. Others are labelled by their tag.
struct Part {
  int step;
  std::string_view tag;
  std::string_view label;
  Order order;
};
constexpr Part kParts[] = {
    {kPerformScript, "Calculation", "Parameter", kThenHow},
    {kPerformScriptOnServer, "Calculation", "Parameter", kThenHow},
    {kPause, "Calculation", "Duration (seconds)", kThenHow},
    {kSaveAsXml, "Option", "Include details for analysis tools", kOptionsLast},
    {kGoToRelatedRecord, "Option", "Show only related records", kOptionsLast},
    {kCommitRecords, "Option", "Skip data entry validation", kOptionsLast},
    {kAnyStep, "Script", "", kWhatFirst},
    {kAnyStep, "Calculated", "", kWhatFirst},
    {kAnyStep, "Layout", "", kWhatFirst},
    {kAnyStep, "Field", "", kWhatFirst},
    {kAnyStep, "TargetName", "", kWhatFirst},
    {kAnyStep, "Table", "From table", kWhatFirst},
    {kAnyStep, "Calculation", "", kThenHow},
    {kAnyStep, "Text", "", kThenHow},
    {kAnyStep, "Result", "", kThenHow},
    {kAnyStep, "URL", "", kThenHow},
    {kAnyStep, "UniversalPathList", "", kThenHow},
    {kAnyStep, "CURLOptions", "cURL options", kOptionsLast},
    {kNewWindow, "NewWndStyles", "Style", kOptionsLast},
    {kAnyStep, "Query", "Find", kThenHow},
    {kAnyStep, "SortList", "Sort", kThenHow},
    {kAnyStep, "SelectAll", "Select", kOptionsLast},
    {kAnyStep, "ChgPwdOnNextLogin", "Change password on next login", kOptionsLast},
    {kAnyStep, "Exit", "Exit after last", kOptionsLast},
    {kAnyStep, "LimitToWindowsOfCurrentFile", "Current file", kOptionsLast},
    {kAnyStep, "ESSForceCommit", "Override ESS locking conflicts", kOptionsLast},
    {kAnyStep, "DontEncodeURL", "Do not encode URL", kOptionsLast},
};

// Parts that FileMaker's own list of steps does not show either.
constexpr std::string_view kNotShown[] = {"Restore",       "Option",        "DisableStepCollapsed",
                                          "SerialNumbers", "ImportOptions", "NewWndStyles"};
// Values that only say where in the step the actual value is.
constexpr std::string_view kUnspoken[] = {
    "SelectedLayout", "LayoutNameByCalc", "ByCalculation", "ByName", "Calculation",
    "ForDuration",    "Always",           "None",          ""};
constexpr std::string_view kLongLists[] = {"TargetFields", "ExportEntries", "SummaryFields"};
constexpr std::string_view kSecrets[] = {"Password", "PrivateKey", "APIKey"};
constexpr std::string_view kNamed[] = {"Script", "Layout"};

const Part* FindPart(int step, std::string_view tag) {
  const auto found = std::find_if(std::begin(kParts), std::end(kParts), [&](const Part& part) {
    return part.tag == tag && (part.step == step || part.step == kAnyStep);
  });
  return found == std::end(kParts) ? nullptr : found;
}

bool IsSecret(std::string_view tag) {
  return std::any_of(std::begin(kSecrets), std::end(kSecrets),
                     [tag](std::string_view word) { return tag.find(word) != std::string_view::npos; });
}

bool IsOn(XmlNode node) { return Attribute(node, "state") == "True"sv || Attribute(node, "value") == "True"sv; }
bool IsSwitch(XmlNode node) {
  const std::string_view value = Attribute(node, "value");
  return !node.first_child() && (node.attribute("state") || value == "True" || value == "False");
}

bool IsNumber(std::string_view text) { return text.find_first_not_of("0123456789") == std::string_view::npos; }

std::size_t CountFields(XmlNode node) {
  std::size_t count = 0;
  for (const XmlNode child : node.children()) count += (child.name() == "Field") + CountFields(child);
  return count;
}

// The value in the attributes of a part that has no content.
std::string AttributeValue(XmlNode node) {
  if (const std::string_view name = Attribute(node, "name"); !name.empty()) {
    return Contains(kNamed, node.name()) ? Quoted(name) : std::string(name);
  }
  for (const char* attribute : {"value", "Style", "choice", "type"}) {
    const std::string_view value = Attribute(node, attribute);
    if (!Contains(kUnspoken, value) && !IsNumber(value)) return Label(value);
  }
  return {};
}

std::string Value(XmlNode node) {
  if (!node.IsElement()) return {};
  const std::string_view tag = node.name();
  if (tag == "Field") return SnippetFieldName(node);
  if (Contains(kLongLists, tag)) return Counted(CountFields(node), "field");
  std::string children;
  for (const XmlNode child : node.children()) Append(children, Value(child), tag == "Criteria" ? ": " : " ; ");
  if (IsSecret(tag) && !IsSwitch(node)) return children.empty() && Text(node).empty() ? "" : "(hidden)";
  if (children.empty()) children = WithLineFeeds(Text(node));
  Cut(children, kLongestValue);
  if (children.empty()) return AttributeValue(node);
  if (tag == "Sort" && Attribute(node, "type") == "Descending"sv) return children + " descending";
  if (tag == "RequestRow" && Attribute(node, "operation") == "Exclude"sv) return "omit " + children;
  return children;
}

// `$name[repetition] ; Value: formula`
std::string Variable(XmlNode step) {
  std::string text = Text(step.child("Name"));
  const std::string repetition = Value(step.child("Repetition")), value = Value(step.child("Value"));
  if (!repetition.empty() && repetition != "1") text += '[' + repetition + ']';
  if (!value.empty()) Append(text, "Value: " + value, " ; ");
  return text;
}

std::string Switch(XmlNode node, const std::string& label) {
  if (node.name() == "NoInteract"sv) return IsOn(node) ? "With dialog: Off" : "With dialog: On";
  if (node.name() == "Set"sv) return IsOn(node) ? "On" : "Off";
  return IsOn(node) ? label : "";
}

std::string Parameter(XmlNode node, const Part* part) {
  const std::string_view tag = node.name();
  if (part == nullptr && Contains(kNotShown, tag)) return {};
  const std::string label = part == nullptr ? Label(tag) : std::string(part->label);
  if (IsSwitch(node)) return Switch(node, label);
  const std::string value = Value(node);
  if (tag == "Repetition" && value == "1") return {};
  // A choice explains itself.
  const bool isChoice = part == nullptr && !node.first_child() && node.attribute("value");
  return value.empty() || label.empty() || isChoice ? value : label + ": " + value;
}

std::string Parameters(XmlNode step, int id) {
  if (id == kSetVariable) return Variable(step);
  std::string text[kOptionsLast + 1];
  for (const XmlNode node : step.children()) {
    const Part* part = FindPart(id, node.name());
    const bool isOption = IsSwitch(node) && node.name() != "Set"sv;
    const Order order = part != nullptr ? part->order : isOption ? kOptionsLast : kThenHow;
    if (node.IsElement()) Append(text[order], Parameter(node, part), " ; ");
  }
  std::string all;
  for (const std::string& part : text) Append(all, part, " ; ");
  return all;
}

}  // namespace

std::string SnippetFieldName(XmlNode field) {
  const std::string variable = Text(field);
  if (!variable.empty()) return variable;
  const std::string_view table = Attribute(field, "table"), repetition = Attribute(field, "repetition");
  std::string name(table);
  Append(name, Attribute(field, "name"), "::");
  if (!repetition.empty() && repetition != "1") name.append("[").append(repetition).append("]");
  return name;
}

std::string SnippetStepText(XmlNode step) {
  const int id = step.attribute("id").AsInt();
  std::string line = Attribute(step, "enable") == "False"sv ? "// " : "";
  if (id == kCommentStep) {
    const std::string comment = WithLineFeeds(Text(step.child("Text")));
    return comment.empty() ? line : line + "# " + comment;
  }
  line += Attribute(step, "name");
  const std::string parameters = Parameters(step, id);
  return parameters.empty() ? line : line + " [ " + parameters + " ]";
}

std::vector<StepLine> SnippetSteps(XmlNode parent) {
  std::vector<StepLine> lines;
  StepNesting nesting;
  for (const XmlNode step : parent.children("Step")) {
    const int depth = nesting.DepthOf(step.attribute("id").AsInt(), Attribute(step, "enable") != "False"sv);
    lines.push_back({depth, SnippetStepText(step), {}});
  }
  return lines;
}

}  // namespace solution
