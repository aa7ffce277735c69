// The tools for designs in the data folder.
#include <algorithm>
#include <memory>
#include <tuple>
#include <utility>

#include "canonical/Properties.h"
#include "changes/LineDiff.h"
#include "designs/DesignJson.h"
#include "designs/OpenDesign.h"
#include "mcp/Arguments.h"
#include "mcp/Limits.h"
#include "mcp/Pieces.h"
#include "mcp/StoredDesigns.h"
#include "mcp/Tools.h"
#include "references/ReferenceIndex.h"

namespace service::mcp {
namespace {

using solution::Design;
using solution::Element;

// The rows that the caller asked for, {"total":N,NAME:[…]}; `describe` is called only for these.
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
  const auto opened = OpenStored(call, Text(arguments, "design"));
  const Design& design = opened->design();
  auto elements = Flag(arguments, "unused") ? opened->references().Unused(design) : AllElements(design);
  std::erase_if(elements, [&](const Element* element) { return !HasKind(*element, Text(arguments, "kind")); });
  return {Page("elements", elements, arguments, [&](const Element* element) { return Summary(design, *element); })};
}

ToolResult ElementText(Call& call, const Value& arguments) {
  const auto opened = OpenStored(call, Text(arguments, "design"));
  const Design& design = opened->design();
  Json elements = Json::array();
  std::string text;
  for (const Element* element : Named(design, Text(arguments, "name"), Text(arguments, "kind"))) {
    call.Check();
    elements.push_back(DescribeElementIn(design, *element));
    SetPiece(elements.back(), "text", CanonicalText(design, *element), arguments);
    text += elements.back()["text"].get_ref<const std::string&>() + '\n';
  }
  return {{{"elements", std::move(elements)}}, std::move(text)};
}

ToolResult Search(Call& call, const Value& arguments) {
  const auto rows = static_cast<std::size_t>(Number(arguments, "limit", kRows));
  Json hits = Json::array();
  std::size_t total = 0;
  const auto found = [&](const StoredHit& hit) {
    if (++total <= rows) hits.push_back(DescribeHit(hit));
  };
  OpenHistory(call.options().Folder()).Search(Text(arguments, "text"), Text(arguments, "file"), found, [&call] {
    return !call.IsCancelled();
  });
  call.Check();
  return {{{"total", total}, {"hits", std::move(hits)}}};
}

// The lines that differ, each after "-" or "+", and a few lines around them.
std::string Diff(const solution::PropertyChange& property) {
  constexpr std::size_t kContext = 2;
  const auto lines = solution::DiffLines(property.older, property.newer);
  const auto isChanged = [](const auto& line) { return line.origin != solution::DiffLine::Origin::kBoth; };
  std::string text;
  bool isGap = false;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    const auto first = lines.begin() + static_cast<std::ptrdiff_t>(i - std::min(i, kContext));
    const auto last = lines.begin() + static_cast<std::ptrdiff_t>(std::min(lines.size(), i + kContext + 1));
    if (std::none_of(first, last, isChanged)) {
      isGap = true;
      continue;
    }
    if (std::exchange(isGap, false)) text += "  ...\n";
    const bool isOlder = lines[i].origin == solution::DiffLine::Origin::kOlder;
    text += (!isChanged(lines[i]) ? "  " : isOlder ? "- " : "+ ") + lines[i].text + '\n';
  }
  return text;
}

Json DescribeDetails(const solution::Change& change) {
  Json json = DescribeChange(change);
  json.erase("properties");
  json["details"] = Json::array();
  for (const auto& property : change.properties) {
    const bool isLong = (property.older + property.newer).find('\n') != std::string::npos;
    json["details"].push_back(
        isLong ? Json{{"name", property.name}, {"diff", Diff(property)}}
               : Json{{"name", property.name}, {"older", property.older}, {"newer", property.newer}});
  }
  return json;
}

ToolResult Changes(Call& call, const Value& arguments) {
  std::string older = Text(arguments, "older"), newer = Text(arguments, "newer");
  const std::string file = Text(arguments, "file");
  if (file.empty() == (older.empty() || newer.empty())) {
    throw ToolError("changes takes either file, or older and newer");
  }
  if (!file.empty()) std::tie(older, newer) = NewestTwo(file, call.options().Folder());
  const auto olderDesign = OpenStored(call, older), newerDesign = OpenStored(call, newer);
  const auto comparison =
      Compare(olderDesign->design(), newerDesign->design(), [&call](std::size_t, std::size_t) { call.Check(); });
  Json json = Page("changes", comparison.changes, arguments, DescribeDetails);
  json["warnings"] = comparison.warnings;
  return {std::move(json)};
}

ToolResult References(Call& call, const Value& arguments) {
  const std::string of = Text(arguments, "of");
  if (!of.empty() && Flag(arguments, "broken")) throw ToolError("broken and of cannot be combined");
  const auto opened = OpenStored(call, Text(arguments, "design"));
  const Design& design = opened->design();
  const auto elements = of.empty() ? std::vector<const Element*>() : Named(design, of, Text(arguments, "kind"));
  return {Page("references", opened->references().Select(elements, Flag(arguments, "broken")), arguments,
               [&](const solution::Reference* reference) { return DescribeReferenceIn(design, *reference); })};
}

constexpr Tool kDesignTools[] = {
    {"designs", "List designs",
     "Lists the designs (complete schema exports) of FileMaker files that are stored on this machine, newest first: "
     "id, file, time, FileMaker version, label and note. Begin here to learn which files can be examined. To get the "
     "present state of an open file first, use get_design.",
     R"({"file": {"type": "string", "description": "only those of this file; its name or UUID"},
         "limit": "@limit", "offset": "@offset"})",
     R"({"total!": "integer", "nextOffset": "@nextOffset",
         "designs!": [{"id!": "integer", "fileUuid": "text", "fileName!": "text", "receivedAt!": "text", "version": "text",
                       "bytes": "integer", "label": "text", "note": "text",
                       "problem": {"type": "string", "description": "why it cannot be read"}}]})",
     Effect::kNone, Designs},
    {"elements", "List elements of a design",
     "Lists what a FileMaker file consists of: its tables, fields, scripts, layouts, value lists and so on, each with "
     "its kind, name (a field as Table::Field), folder or table, and a line of detail. With kind only those of one "
     "kind. With unused only those that nothing in the file refers to: candidates for deletion. An unused element may "
     "still be used by a formula that computes names (GetField, ExecuteSQL, a script by its name), by a person from a "
     "menu, or by another file: say so before the user deletes it.",
     R"({"design!": "@design", "kind": "@kind",
         "unused": {"type": "boolean", "description": "only elements that nothing refers to"},
         "limit": "@limit", "offset": "@offset"})",
     R"({"total!": "integer", "nextOffset": "@nextOffset",
         "elements!": [{"key!": "@key", "kind!": "text", "name!": "text", "parent": "@parent", "detail": "text"}]})",
     Effect::kNone, Elements},
    {"element", "Show one element",
     "Shows the full definition of one element of a design as readable text: a script with its steps, a field with "
     "its type, options, formula and validation, a layout with its objects, a custom function with its formula, and "
     "so on. Use it to read or explain a script or a calculation. A name that several elements have gives them all; "
     "kind narrows it down.",
     R"({"design!": "@design", "name!": "@element", "kind": "@kind", "offset": "@pieceOffset", "maxBytes": "@maxBytes"})",
     R"({"elements!": [{"key!": "@key", "kind!": "text", "uuid": "text", "name!": "text", "parent": "@parent",
                        "detail": "text", "user": {"type": "string", "description": "who changed it last"},
                        "time": {"type": "string", "description": "when, in local time"}, "text!": "text",
                        "bytes": {"type": "integer", "description": "of the whole text"}, "nextOffset": "@nextPiece"}]})",
     Effect::kNone, ElementText},
    {"search", "Search designs",
     "Finds every line that contains a text, in any case, in the names, formulas, script steps, comments and other "
     "properties of all stored designs or those of one file. Each hit has the element, the property and the line, and "
     "the first and the last design that contain it. Use it to find an element by a part of its name, or where a "
     "variable, a literal or a function is used. For who uses a field or a script, references is exact.",
     R"({"text!": {"type": "string", "description": "what to find"},
         "file": {"type": "string", "description": "only in designs of this file; its name or UUID"},
         "limit": "@limit"})",
     R"({"total!": "integer",
         "hits!": [{"firstDesign!": "integer", "lastDesign!": "integer", "fileName!": "text", "kind!": "text",
                    "uuid!": "text", "name!": "text", "property!": "text", "line!": "integer", "text!": "text"}]})",
     Effect::kNone, Search},
    {"changes", "Compare two designs",
     "Shows what changed between two designs of a file: elements added, removed, renamed, moved and edited, with the "
     "values before and after; of scripts and formulas the lines that differ. Takes either file, for its newest two "
     "designs, or older and newer.",
     R"({"file": {"type": "string", "description": "name of a file: its newest two designs"}, "older": "@design",
         "newer": "@design", "limit": "@limit", "offset": "@offset"})",
     R"({"total!": "integer", "nextOffset": "@nextOffset",
         "changes!": [{"change!": {"type": "string", "enum": ["added", "removed", "renamed", "moved", "edited"]},
                       "kind!": "text", "uuid!": "text", "name!": "text", "oldName": "text",
                       "details!": [{"name!": "text", "older": "text", "newer": "text", "diff": "text"}]}],
         "warnings!": ["text"]})",
     Effect::kNone, Changes},
    {"references", "Find references",
     "Shows what uses what in a design: each reference from one element (script, layout, field, relationship and so "
     "on) to another, with the place, such as a script step. With of, only the references from and to one element: "
     "everything that a change of it could affect. With broken, the references to what was deleted, which FileMaker "
     "shows as <Field Missing> and the like.",
     R"({"design!": "@design", "of": "@element", "kind": {"type": "string", "description": "kind of the element named by of"},
         "broken": {"type": "boolean", "description": "instead, references to what was deleted"},
         "limit": "@limit", "offset": "@offset"})",
     R"({"total!": "integer", "nextOffset": "@nextOffset",
         "references!": [{"fromKind!": "text", "fromUuid": "text", "fromName!": "text", "fromKey": "text", "toKind!": "text",
                          "toUuid": "text", "toName!": "text", "toKey": "text", "place!": "text"}]})",
     Effect::kNone, References},
};

}  // namespace

std::span<const Tool> DesignTools() { return kDesignTools; }

}  // namespace service::mcp
