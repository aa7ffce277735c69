#include "mcp/Snippet.h"

#include <algorithm>

#include "export/ParsedXml.h"

namespace service::mcp {
namespace {

struct PasteKind {
  std::string_view xmlType;
  std::string_view elements;  ///< that may be directly inside the snippet, each between spaces
  std::string_view place;
};

constexpr PasteKind kKinds[] = {
    {"XMSS", " Step ", "an open script in the Script Workspace"},
    {"XMSC", " Script Group ", "the list of scripts in the Script Workspace"},
    {"XMFD", " Field ", "the fields of a table in Manage Database"},
    {"XMTB", " BaseTable ", "the tables in Manage Database"},
    {"XMFN", " CustomFunction ", "Manage Custom Functions"},
    {"XMVL", " ValueList ", "Manage Value Lists"},
    {"XML2", " Layout ", "a layout in Layout mode"},
    {"XMLO", " Layout ", "a layout in Layout mode"},
};

const PasteKind* Find(std::string_view xmlType) {
  const auto* found =
      std::find_if(std::begin(kKinds), std::end(kKinds), [&](auto& kind) { return kind.xmlType == xmlType; });
  return found == std::end(kKinds) ? nullptr : found;
}

bool MayHold(const PasteKind& kind, std::string_view element) {
  return kind.elements.find(' ' + std::string(element) + ' ') != std::string_view::npos;
}

std::string Suggestion(std::string_view element) {
  for (const auto& kind : kKinds) {
    if (MayHold(kind, element)) return "; that is xmlType " + std::string(kind.xmlType);
  }
  return "";
}

}  // namespace

std::string CheckSnippet(std::string_view xmlType, const std::string& xml) try {
  const PasteKind* kind = Find(xmlType);
  if (kind == nullptr) return "unknown xmlType " + std::string(xmlType);
  const solution::ParsedXml snippet(xml);
  if (snippet.root().name() != "fmxmlsnippet") {
    return "the root element must be fmxmlsnippet, <fmxmlsnippet type=\"FMObjectList\">, not " +
           std::string(snippet.root().name());
  }
  bool isEmpty = true;
  for (const auto node : snippet.root().children()) {
    if (!node.IsElement()) continue;
    isEmpty = false;
    if (!MayHold(*kind, node.name())) {
      return std::string(xmlType) + " cannot contain the element " + std::string(node.name()) + Suggestion(node.name());
    }
  }
  return isEmpty ? "the snippet is empty" : "";
} catch (const solution::Refusal& refusal) {
  return "the content " + refusal.reason + "; it must be one well-formed element, fmxmlsnippet";
}

std::string_view PlaceOf(std::string_view xmlType) {
  const PasteKind* kind = Find(xmlType);
  return kind == nullptr ? "" : kind->place;
}

std::size_t CountObjects(const std::string& xml) {
  const solution::ParsedXml snippet(xml);
  std::size_t count = 0;
  for (const auto node : snippet.root().children()) count += node.IsElement() ? 1 : 0;
  return count;
}

}  // namespace service::mcp
