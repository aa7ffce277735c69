#include "snippet/ObjectText.h"

#include <algorithm>
#include <iterator>
#include <string_view>
#include <utility>

#include "canonical/Indent.h"
#include "canonical/Words.h"
#include "export/Xml.h"
#include "snippet/SnippetSteps.h"

namespace solution {
namespace {

using std::operator""sv;

bool IsTrue(XmlNode node, const char* attribute) { return Attribute(node, attribute) == "True"sv; }

constexpr std::size_t kLongestBlock = 256 << 10;  // hostile nesting would indent its content again and again

// `text` as a block of lines below a heading.
std::string Block(std::string text) {
  if (text.empty()) return {};
  Cut(text, kLongestBlock);
  std::string block = std::string(kIndent, ' ') + Indented(text, kIndent);
  const auto end = block.find_last_not_of(" \n");
  return end == std::string::npos ? std::string() : block.substr(0, end + 1) + '\n';
}

std::string Formula(XmlNode owner) { return WithLineFeeds(Text(owner.child("Calculation"))); }

std::string Heading(std::string_view kind, XmlNode object) {
  return std::string(kind) + ' ' + Quoted(Attribute(object, "name"));
}

// What a folder contains.
std::string Members(XmlNode group) {
  std::string text;
  for (const XmlNode member : group.children()) {
    if (member.IsElement()) text += Block(ObjectText(member));
  }
  return text;
}

std::string FolderText(XmlNode group) { return Heading("Folder", group) + '\n' + Members(group); }

std::string ScriptText(XmlNode script) {
  if (Attribute(script, "name") == "-"sv) return "-\n";
  std::string options;
  if (IsTrue(script, "runFullAccess")) Append(options, "full access");
  if (Attribute(script, "includeInMenu") == "False"sv) Append(options, "not in the menu");
  if (!options.empty()) options = ": " + options;
  return Heading("Script", script) + options + '\n' + Block(JoinLines(SnippetSteps(script)));
}

std::string StepText(XmlNode step) { return SnippetStepText(step) + '\n'; }

std::string DataType(XmlNode field) {
  const std::string_view type = Attribute(field, "dataType");
  return std::string(type == "TimeStamp" ? "Timestamp" : type == "Binary" ? "Container" : type);
}

void AppendEntry(XmlNode entry, std::string& detail) {
  Append(detail, Words(Attribute(entry, "value")));
  if (const XmlNode serial = entry.child("Serial")) {
    Append(detail, "serial number from " + std::string(Attribute(serial, "nextValue")));
  }
  if (IsTrue(entry, "constant")) Append(detail, "auto-enter \"" + Text(entry.child("ConstantData")) + '"');
  if (IsTrue(entry, "lookup")) Append(detail, "lookup");
}

void AppendValidation(XmlNode validation, std::string& detail) {
  constexpr std::pair<const char*, const char*> kRules[] = {
      {"NotEmpty", "not empty"}, {"Unique", "unique"}, {"Existing", "existing value"}};
  for (const auto& [tag, words] : kRules) {
    if (IsTrue(validation.child(tag), "value")) Append(detail, words);
  }
  if (IsTrue(validation, "maxLength")) {
    Append(detail, "at most " + std::string(Attribute(validation.child("MaxDataLength"), "value")) + " characters");
  }
  if (IsTrue(validation, "valuelist")) {
    Append(detail, "value list " + Quoted(Attribute(validation.child("ValueList"), "name")));
  }
}

std::string FieldDetail(XmlNode field) {
  std::string detail = DataType(field);
  const std::string_view kind = Attribute(field, "fieldType");
  if (kind == "Calculated") Append(detail, "calculated");
  if (kind == "Summary") {
    const XmlNode summary = field.child("SummaryInfo");
    std::string operation = Words(Attribute(summary, "operation"));
    Append(operation, SnippetFieldName(summary.child("SummaryField").child("Field")), " of ");
    Append(detail, "summary: " + operation);
  }
  const XmlNode storage = field.child("Storage");
  if (IsTrue(storage, "global")) Append(detail, "global");
  if (Attribute(storage, "storeCalculationResults") == "False"sv) Append(detail, "unstored");
  if (const int repetitions = storage.attribute("maxRepetition").AsInt(1); repetitions > 1) {
    Append(detail, Counted(static_cast<std::size_t>(repetitions), "repetition"));
  }
  AppendEntry(field.child("AutoEnter"), detail);
  AppendValidation(field.child("Validation"), detail);
  return detail;
}

// Snippets give a field's table only where a formula needs it.
std::string TableOf(XmlNode field) {
  for (const XmlNode owner : {field, field.child("AutoEnter"), field.child("Validation")}) {
    const std::string_view table = Attribute(owner.child("Calculation"), "table");
    if (!table.empty()) return std::string(table);
  }
  return {};
}

std::string FieldTitle(XmlNode field) {
  std::string table = TableOf(field);
  for (XmlNode other = field.next("Field"); other && table.empty(); other = other.next("Field")) table = TableOf(other);
  if (table.empty()) return Heading("Field", field);
  return "Field " + table + "::" + std::string(Attribute(field, "name"));
}

std::string FieldText(XmlNode field) {
  const std::string comment = WithLineFeeds(Text(field.child("Comment")));
  std::string text = std::string(Attribute(field, "name")) + ": " + FieldDetail(field) + '\n';
  if (!comment.empty()) text += Block("// " + comment);
  text += Block(Formula(field));
  const XmlNode entry = field.child("AutoEnter"), validation = field.child("Validation");
  if (IsTrue(entry, "calculation")) text += Block("Auto-enter: " + Formula(entry));
  if (IsTrue(validation, "calculation")) text += Block("Validation: " + Formula(validation));
  return text;
}

std::string TableText(XmlNode table) {
  std::string text = Heading("Table", table) + '\n';
  const std::string_view comment = Attribute(table, "comment");
  if (!comment.empty()) text += Block("// " + std::string(comment));
  for (const XmlNode field : table.children("Field")) text += Block(FieldText(field));
  return text;
}

std::string ValueListText(XmlNode list) {
  std::string text = Heading("Value list", list) + '\n';
  std::string fields;
  for (const char* part : {"PrimaryField", "SecondaryField"}) {
    Append(fields, SnippetFieldName(list.child(part).child("Field")), " and ");
  }
  if (!fields.empty()) text += Block("from " + fields);
  if (Attribute(list.child("Source"), "value") == "External"sv) text += Block("from another file");
  return text + Block(WithLineFeeds(Text(list.child("CustomValues").child("Text"))));
}

std::string FunctionText(XmlNode function) {
  std::string parameters(Attribute(function, "parameters")), spaced;
  for (const char c : parameters) c == ';' ? spaced += " ; " : spaced += c;
  const std::string list = spaced.empty() ? "" : " ( " + spaced + " )";
  return std::string(Attribute(function, "name")) + list + '\n' + Block(Formula(function));
}

std::string ThemeText(XmlNode theme) {
  return Heading("Theme", theme) + '\n' + Block(WithLineFeeds(Text(theme.child("CSS"))));
}

// The content of one layout object, apart from that of the objects in it.
struct ObjectContent {
  std::string text;   ///< what is written on it
  std::string field;  ///< that it shows
  std::string rest;   ///< steps and formulas, a line each
  std::string inner;  ///< the objects in it
};

void Collect(XmlNode node, ObjectContent& content) {
  for (const XmlNode child : node.children()) {
    const std::string_view tag = child.name();
    const std::string text = WithLineFeeds(Text(child));
    if (tag == "Object") {
      content.inner += ObjectText(child);
    } else if (tag == "Step") {
      content.rest += SnippetStepText(child) + '\n';
    } else if (tag == "Data" && node.name() == "Style"sv) {
      Append(content.text, text, " ");
    } else if (tag == "Name" && node.name() == "FieldObj"sv) {
      content.field = text;
    } else if (tag == "Calculation" && !text.empty()) {
      content.rest += Label(node.name()) + ": " + text + '\n';
    } else {
      Collect(child, content);
    }
  }
}

std::string TitleOf(XmlNode object, const ObjectContent& content) {
  std::string title = Label(Attribute(object, "type"));
  const std::string_view name = Attribute(object, "name");
  const std::string text = content.text.substr(0, content.text.find('\n'));
  Append(title, content.field, " ");
  if (!name.empty()) Append(title, Quoted(name), " ");
  if (!text.empty()) Append(title, Quoted(text), " ");
  return title;
}

std::string LayoutObjectTitle(XmlNode object) {
  ObjectContent content;
  Collect(object, content);
  return TitleOf(object, content);
}

std::string LayoutObjectText(XmlNode object) {
  ObjectContent content;
  Collect(object, content);
  return TitleOf(object, content) + '\n' + Block(content.rest) + Block(content.inner);
}

struct ObjectKind {
  std::string_view tag;
  std::string (*title)(XmlNode object);
  std::string (*text)(XmlNode object);
};
constexpr ObjectKind kKinds[] = {
    {"Step", SnippetStepText, StepText},
    {"Script", [](XmlNode object) { return Heading("Script", object); }, ScriptText},
    {"Group", [](XmlNode object) { return Heading("Folder", object); }, FolderText},
    {"BaseTable", [](XmlNode object) { return Heading("Table", object); }, TableText},
    {"Field", FieldTitle, FieldText},
    {"ValueList", [](XmlNode object) { return Heading("Value list", object); }, ValueListText},
    {"CustomFunction", [](XmlNode object) { return Heading("Custom function", object); }, FunctionText},
    {"Object", LayoutObjectTitle, LayoutObjectText},
    {"Theme", [](XmlNode object) { return Heading("Theme", object); }, ThemeText},
};

const ObjectKind* FindKind(XmlNode object) {
  const auto found = std::find_if(std::begin(kKinds), std::end(kKinds),
                                  [object](const ObjectKind& kind) { return kind.tag == object.name(); });
  return found == std::end(kKinds) ? nullptr : found;
}

}  // namespace

std::string ObjectTitle(XmlNode object) {
  const ObjectKind* kind = FindKind(object);
  return kind == nullptr ? Label(object.name()) : kind->title(object);
}

std::string ObjectText(XmlNode object) {
  const ObjectKind* kind = FindKind(object);
  return kind == nullptr ? Label(object.name()) + '\n' : kind->text(object);
}

}  // namespace solution
