#include "canonical/Steps.h"

#include <algorithm>
#include <optional>
#include <string_view>

#include "Contains.h"
#include "canonical/Flatten.h"
#include "canonical/Indent.h"
#include "canonical/Words.h"
#include "export/Xml.h"

namespace solution {
namespace {

using std::operator""sv;

enum StepId {
  kIf = 68,
  kElse = 69,
  kEndIf = 70,
  kLoop = 71,
  kEndLoop = 73,
  kElseIf = 125,
  kOpenTransaction = 205,
  kCommitTransaction = 206,
};

bool StartsBlock(int id) { return id == kIf || id == kLoop || id == kOpenTransaction || id == kElse || id == kElseIf; }
bool EndsBlock(int id) {
  return id == kEndIf || id == kEndLoop || id == kCommitTransaction || id == kElse || id == kElseIf;
}

// Parameters whose content explains itself.
constexpr std::string_view kUnlabelled[] = {"Calculation",
                                            "Comment",
                                            "Boolean",
                                            "FieldReference",
                                            "List",
                                            "Variable",
                                            "LayoutReferenceContainer",
                                            "Animation",
                                            "Options",
                                            "Related",
                                            "Target",
                                            "Restore",
                                            "UniversalPathList",
                                            "WindowReference",
                                            "URL",
                                            "ScriptReference",
                                            "Text",
                                            "Name"};
// The indentation of a hundred thousand unclosed If steps would take gigabytes.
constexpr int kDeepestShown = 100;
// Long lists of fields, of which the line gives only the length.
constexpr std::string_view kLongLists[] = {"ImportField", "Export"};

int CountFields(XmlNode node) {
  int count = 0;
  for (const XmlNode child : node.children()) count += (child.name() == "FieldReference") + CountFields(child);
  return count;
}

class StepWriter {
 public:
  StepWriter(const Design& design, const Element& element, const Naming& naming)
      : design_(design), element_(element), naming_(naming) {}

  std::string Line(XmlNode step) const {
    const bool isEnabled = Attribute(step, "enable") != "False"sv;
    std::string line = isEnabled ? "" : "// ";
    if (step.attribute("id").AsInt() == kCommentStep) return line + Comment(step);
    line += Attribute(step, "name");
    std::string parameters;
    for (const XmlNode parameter : step.child("ParameterValues").children()) {
      Append(parameters, Parameter(parameter), " ; ");
    }
    if (!parameters.empty()) line += " [ " + parameters + " ]";
    return line;
  }

 private:
  static std::string Comment(XmlNode step) {
    const XmlNode comment = step.child("ParameterValues").child("Parameter").child("Comment");
    std::string text(Attribute(comment, "value"));
    std::replace(text.begin(), text.end(), '\r', '\n');
    return text.empty() ? text : "# " + text;
  }

  std::string Parameter(XmlNode parameter) const {
    const std::string_view type = Attribute(parameter, "type");
    if (type == "Variable" || type == "Name") return Variable(parameter);
    if (Contains(kLongLists, type)) {
      return std::string(type) + ": " + std::to_string(CountFields(parameter)) + " fields";
    }
    std::string value(Attribute(parameter, "value"));
    for (const XmlNode child : parameter.children()) Append(value, Value(child), " ; ");
    if (value.empty() || type.empty() || Contains(kUnlabelled, type)) return value;
    return std::string(type) + ": " + value;
  }

  // `$name[repetition] ; Value: formula`
  std::string Variable(XmlNode parameter) const {
    std::string name(Attribute(parameter.child("Name"), "value"));
    if (name.empty()) name = Value(parameter.child("Name"));
    if (name.empty()) name = Children(parameter, " ");
    const std::string repetition = Value(parameter.child("repetition"));
    if (!repetition.empty() && repetition != "1") name += '[' + repetition + ']';
    const std::string value = Value(parameter.child("value"));
    return value.empty() ? name : name + " ; Value: " + value;
  }

  std::string Value(XmlNode node) const {
    if (IsBookkeeping(node)) return {};
    if (!node.IsElement()) return std::string(node.value());
    if (IsFormula(node)) return FormulaText(design_, element_, node, naming_);
    const std::string_view name = node.name();
    if (name == "Boolean") return Switch(node);
    if (const auto target = Resolve(design_, node)) return ReferenceText(node, *target);
    if (name == "repetition") return Children(node, " ");
    std::string text(Attribute(node, "name"));
    if (text.empty()) text = Attribute(node, node.attribute("type") ? "type" : "value");
    if (node.first_child()) {
      const std::string children = Children(node, " ; ");
      // How an element was chosen matters less than the element.
      if (!children.empty() && (name == "List" || name == "LayoutReferenceContainer")) text.clear();
      Append(text, children, ": ");
    }
    return text;
  }

  std::string Children(XmlNode node, const char* separator) const {
    std::string text;
    for (const XmlNode child : node.children()) Append(text, Value(child), separator);
    return text;
  }

  static std::string Switch(XmlNode node) {
    const std::string_view type = Attribute(node, "type");
    if (type == "Collapsed") return {};
    const std::string state = Attribute(node, "value") == "True" ? "On" : "Off";
    return type.empty() ? state : std::string(type) + ": " + state;
  }

  std::string ReferenceText(XmlNode node, const Target& target) const {
    std::string name = TargetName(design_, target, naming_);
    if (target.kind == Kind::kScript || target.kind == Kind::kLayout) name = "\u201C" + name + "\u201D";
    const std::string repetition = Value(node.child("repetition"));
    if (!repetition.empty() && repetition != "1") name += '[' + repetition + ']';
    return name;
  }

  const Design& design_;
  const Element& element_;
  const Naming& naming_;
};

std::string Details(const Design& design, const Element& element, XmlNode step, const Naming& naming) {
  std::vector<Property> properties;
  Flatten(design, element, step, naming, properties);
  std::string details(Attribute(step, "name"));
  details += ' ' + std::string(Attribute(step, "id")) + '\n';
  for (const Property& property : properties) details += property.name + '=' + property.compared() + '\n';
  return details;
}

}  // namespace

int StepNesting::DepthOf(int id, bool isEnabled) {
  if (!isEnabled) return depth_;
  if (EndsBlock(id)) depth_ = std::max(0, depth_ - 1);
  const int depth = depth_;
  if (StartsBlock(id)) ++depth_;
  return depth;
}

std::string JoinLines(const std::vector<StepLine>& lines) {
  std::string text;
  for (const StepLine& line : lines) {
    const std::size_t columns = static_cast<std::size_t>(std::min(line.depth, kDeepestShown)) * kIndent;
    text += std::string(columns, ' ') + Indented(line.text, columns + kIndent) + '\n';
  }
  return text;
}

StepLine LineOf(const Design& design, const Element& element, XmlNode step, const Naming& naming) {
  return {0, StepWriter(design, element, naming).Line(step), Details(design, element, step, naming)};
}

std::vector<StepLine> StepLines(const Design& design, const Element& script, const Naming& naming) {
  std::vector<StepLine> lines;
  StepNesting nesting;
  for (const XmlNode part : script.nodes) {
    for (const XmlNode step : part.child("ObjectList").children("Step")) {
      lines.push_back(LineOf(design, script, step, naming));
      lines.back().depth = nesting.DepthOf(step.attribute("id").AsInt(), Attribute(step, "enable") != "False"sv);
    }
  }
  return lines;
}

}  // namespace solution
