// Tools on the designs in the data folder.
#include <algorithm>
#include <memory>
#include <sstream>

#include "canonical/Properties.h"
#include "designs/DesignJson.h"
#include "designs/OpenDesign.h"
#include "mcp/Arguments.h"
#include "mcp/Limits.h"
#include "mcp/Tools.h"
#include "references/ReferenceIndex.h"

namespace service::mcp {
namespace {

using solution::Design;
using solution::Element;

std::unique_ptr<const Design> Open(const Call& call, const std::string& name) {
  if (IsPath(name)) throw ToolError("a design is named by its id or by the name of its file, not by a path");
  std::ostringstream warnings;
  return OpenDesign(name, call.options().Folder(), warnings);
}

// The rows that the caller asked for, {"total":N,NAME:[…]}; `describe` is called for these only.
template <class Rows, class Describe>
Json Page(const char* name, const Rows& rows, const Value& arguments, Describe describe) {
  const auto total = static_cast<std::int64_t>(rows.size());
  const auto begin = std::min(Number(arguments, "offset", 0), total);
  const auto end = std::min(begin + Number(arguments, "limit", kRows), total);
  Json page = Json::array();
  for (auto i = begin; i < end; ++i) page.push_back(describe(rows[static_cast<std::size_t>(i)]));
  Json json{{"total", total}, {name, std::move(page)}};
  if (end < total) json["nextOffset"] = end;
  return json;
}

bool HasKind(const Element& element, const std::string& kind) {
  return kind.empty() || NamesOf(element.kind).word == kind;
}

std::vector<const Element*> Named(const Design& design, const std::string& name, const std::string& kind) {
  auto elements = FindElements(design, name);
  std::erase_if(elements, [&](const Element* element) { return !HasKind(*element, kind); });
  if (elements.empty()) {
    throw ToolError("the design has no " + (kind.empty() ? "element" : kind) + " named " + name +
                    "; search finds names by a part of them");
  }
  return elements;
}

ToolResult Designs(Call& call, const Value& arguments) {
  auto designs = OpenHistory(call.options().Folder()).List(Text(arguments, "file"));
  std::reverse(designs.begin(), designs.end());
  return {Page("designs", designs, arguments, DescribeDesign)};
}

std::vector<const Element*> AllElements(const Design& design) {
  std::vector<const Element*> elements;
  for (const Element& element : design.elements()) elements.push_back(&element);
  return elements;
}

ToolResult Elements(Call& call, const Value& arguments) {
  const auto design = Open(call, Text(arguments, "design"));
  auto elements = Flag(arguments, "unused") ? solution::ReferenceIndex(FindReferences(*design)).Unused(*design)
                                            : AllElements(*design);
  std::erase_if(elements, [&](const Element* element) { return !HasKind(*element, Text(arguments, "kind")); });
  return {Page("elements", elements, arguments, [](const Element* element) { return DescribeElement(*element); })};
}

ToolResult ElementText(Call& call, const Value& arguments) {
  const auto design = Open(call, Text(arguments, "design"));
  Json elements = Json::array();
  std::string text;
  for (const Element* element : Named(*design, Text(arguments, "name"), Text(arguments, "kind"))) {
    call.Check();
    elements.push_back(DescribeElement(*element));
    elements.back()["text"] = CanonicalText(*design, *element);
    text += elements.back()["text"].get_ref<const std::string&>() + '\n';
  }
  return {{{"elements", std::move(elements)}}, std::move(text)};
}

ToolResult Search(Call& call, const Value& arguments) {
  const auto rows = static_cast<std::size_t>(Number(arguments, "limit", kRows));
  Json hits = Json::array();
  std::size_t total = 0;
  OpenHistory(call.options().Folder())
      .Search(Text(arguments, "text"), Text(arguments, "file"), [&](const StoredHit& hit) {
        call.Check();
        if (++total <= rows) hits.push_back(DescribeHit(hit));
      });
  return {{{"total", total}, {"hits", std::move(hits)}}};
}

ToolResult Changes(Call& call, const Value& arguments) {
  std::string older = Text(arguments, "older"), newer = Text(arguments, "newer");
  const std::string file = Text(arguments, "file");
  if (file.empty() == (older.empty() || newer.empty()))
    throw ToolError("changes takes either file, or older and newer");
  if (!file.empty()) std::tie(older, newer) = NewestTwo(file, call.options().Folder());
  const auto olderDesign = Open(call, older), newerDesign = Open(call, newer);
  const auto comparison = Compare(*olderDesign, *newerDesign, [&call](std::size_t, std::size_t) { call.Check(); });
  Json json = Page("changes", comparison.changes, arguments, DescribeChange);
  json["warnings"] = comparison.warnings;
  return {std::move(json)};
}

ToolResult References(Call& call, const Value& arguments) {
  const std::string of = Text(arguments, "of");
  if (!of.empty() && Flag(arguments, "broken")) throw ToolError("broken and of exclude each other");
  const auto design = Open(call, Text(arguments, "design"));
  const auto elements = of.empty() ? std::vector<const Element*>() : Named(*design, of, Text(arguments, "kind"));
  const solution::ReferenceIndex index(FindReferences(*design));
  return {Page("references", index.Select(elements, Flag(arguments, "broken")), arguments,
               [](const solution::Reference* reference) { return DescribeReference(*reference); })};
}

#define ROWS                                                                                                        \
  R"("limit":{"type":"integer","minimum":1,"maximum":5000,"description":"how many rows at most; 200 by default"},)" \
  R"("offset":{"type":"integer","minimum":0,"description":"how many rows to leave out: nextOffset of the answer before"})"
#define DESIGN \
  R"("design":{"type":"string","description":"id of a design, from designs; or the name of a file, for its newest design"})"
#define KIND                                                                                                      \
  R"("kind":{"type":"string","enum":["file","table","field","tableOccurrence","relationship","layout","script",)" \
  R"("valueList","customFunction","customMenu","customMenuSet","theme","account","privilegeSet",)"                \
  R"("extendedPrivilege","externalDataSource","baseDirectory","folder"],"description":"only elements of this kind"})"
#define ELEMENT R"("kind":{"type":"string"},"uuid":{"type":"string"},"name":{"type":"string"})"
// An object that has a page of rows under `name`.
#define PAGE(name, item)                                                                             \
  R"({"type":"object","required":["total",")" name R"("],"properties":{"total":{"type":"integer"},)" \
  R"("nextOffset":{"type":"integer","description":"there are more rows from here on"},")" name       \
  R"(":{"type":"array","items":)" item "}"

constexpr Tool kTools[] = {
    {"designs", "List designs",
     "Lists the designs (complete schema exports) of FileMaker files that are stored on this machine, newest first: "
     "id, "
     "file, time, FileMaker version, label and note. Begin here to learn which files can be examined. To get the "
     "present "
     "state of an open file first, use get_design.",
     R"({"type":"object","properties":{"file":{"type":"string","description":"only those of this file; its name or UUID"},)" ROWS
     "}}",
     PAGE("designs",
          R"({"type":"object","required":["id","fileName","receivedAt"],"properties":{"id":{"type":"integer"},)"
          R"("fileName":{"type":"string"},"receivedAt":{"type":"string"},"version":{"type":"string"},)"
          R"("bytes":{"type":"integer"},"label":{"type":"string"},"note":{"type":"string"},"problem":)"
          R"({"type":"string","description":"why it cannot be read"}}})") "}}",
     Effect::kNone, Designs},
    {"elements", "List elements of a design",
     "Lists what a FileMaker file consists of: its tables, fields, scripts, layouts, value lists and so on, each with "
     "kind, "
     "UUID and name (fields as Table::Field). With kind only those of one kind. With unused only those that nothing in "
     "the "
     "file refers to: candidates for deletion. An unused element may still be used by a formula that computes names "
     "(GetField, ExecuteSQL, a script by its name), by a person from a menu, or by another file.",
     R"({"type":"object","required":["design"],"properties":{)" DESIGN "," KIND
     R"(,"unused":{"type":"boolean","description":"only elements that nothing refers to"},)" ROWS "}}",
     PAGE("elements", R"({"type":"object","required":["kind","uuid","name"],"properties":{)" ELEMENT "}}") "}}",
     Effect::kNone, Elements},
    {"element", "Show one element",
     "Shows the full definition of one element of a design as readable text: a script as its numbered steps, a field "
     "with "
     "its type, options, formula and validation, a layout with its objects, a custom function with its formula, and so "
     "on. "
     "Use it to read or explain a script or a calculation. A name that several elements have gives them all; kind "
     "narrows "
     "it down.",
     R"({"type":"object","required":["design","name"],"properties":{)" DESIGN
     R"(,"name":{"type":"string","description":"name or UUID of the element; a field as Table::Field"},)" KIND "}}",
     R"({"type":"object","required":["elements"],"properties":{"elements":{"type":"array","items":{"type":"object",)"
     R"("required":["kind","uuid","name","text"],"properties":{)" ELEMENT R"(,"text":{"type":"string"}}}}}})",
     Effect::kNone, ElementText},
    {"search", "Search designs",
     "Finds every line that contains a text, in any case, in the names, formulas, script steps, comments and other "
     "properties of all stored designs or those of one file. Each hit has the element, the property and the line, and "
     "the "
     "first and the last design that contain it. Use it to find an element by a part of its name, or where a variable, "
     "a "
     "literal or a function is used. For who uses a field or a script, references is exact.",
     R"({"type":"object","required":["text"],"properties":{"text":{"type":"string","description":"what to find"},)"
     R"("file":{"type":"string","description":"only in designs of this file; its name or UUID"},)"
     R"("limit":{"type":"integer","minimum":1,"maximum":5000,"description":"how many hits at most; 200 by default"}}})",
     R"({"type":"object","required":["total","hits"],"properties":{"total":{"type":"integer"},"hits":{"type":"array",)"
     R"("items":{"type":"object","required":["firstDesign","lastDesign","fileName","kind","uuid","name","property","line",)"
     R"("text"],"properties":{"firstDesign":{"type":"integer"},"lastDesign":{"type":"integer"},)"
     R"("fileName":{"type":"string"},)" ELEMENT
     R"(,"property":{"type":"string"},"line":{"type":"integer"},"text":{"type":"string"}}}}}})",
     Effect::kNone, Search},
    {"changes", "Compare two designs",
     "Shows what changed between two designs of a file: elements added, removed, renamed, moved and edited, with the "
     "properties that changed. Either file, for its newest two designs, or older and newer.",
     R"({"type":"object","properties":{"file":{"type":"string","description":"name of a file: its newest two designs"},)"
     R"("older":{"type":"string","description":"id of a design"},"newer":{"type":"string","description":"id of a design"},)" ROWS
     "}}",
     PAGE(
         "changes",
         R"({"type":"object","required":["change","kind","uuid","name"],"properties":{"change":{"type":"string",)"
         R"("enum":["added","removed","renamed","moved","edited"]},)" ELEMENT
         R"(,"oldName":{"type":"string"},"properties":{"type":"array","items":{"type":"string"}}}})") R"(,"warnings":{"type":"array","items":{"type":"string"}}}})",
     Effect::kNone, Changes},
    {"references", "Find references",
     "Shows who uses what in a design: each reference from one element (script, layout, field, relationship and so on) "
     "to "
     "another, with the place, such as a script step. With of, only the references from and to one element: everything "
     "that "
     "a change of it could affect. With broken, the references to what was deleted, which FileMaker shows as <Field "
     "Missing> and the like.",
     R"({"type":"object","required":["design"],"properties":{)" DESIGN
     R"(,"of":{"type":"string","description":"name or UUID of an element; a field as Table::Field"},)" KIND
     R"(,"broken":{"type":"boolean","description":"instead, references to what was deleted"},)" ROWS "}}",
     PAGE(
         "references",
         R"({"type":"object","required":["fromKind","fromUuid","fromName","toKind","toUuid","toName","place"],"properties":)"
         R"({"fromKind":{"type":"string"},"fromUuid":{"type":"string"},"fromName":{"type":"string"},)"
         R"("toKind":{"type":"string"},"toUuid":{"type":"string"},"toName":{"type":"string"},"place":{"type":"string"}}})") "}}",
     Effect::kNone, References},
};

}  // namespace

std::span<const Tool> DesignTools() { return kTools; }

}  // namespace service::mcp
