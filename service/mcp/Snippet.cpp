#include "mcp/Snippet.h"

#include <algorithm>
#include <rapidxml.hpp>

#include "export/TagCheck.h"
#include "export/XmlTree.h"

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

// The parsed snippet, which points into the text.
class Snippet {
 public:
  explicit Snippet(std::string xml) : text_(std::move(xml)) {}

  /// Why it is not XML; empty when it is.
  std::string Parse() try {
    if (const auto flaw = solution::FindFlaw(text_)) return flaw->reason + Line(flaw->offset);
    document_.parse<rapidxml::parse_validate_closing_tags | rapidxml::parse_non_destructive>(text_.data());
    return "";
  } catch (const rapidxml::parse_error& error) {
    return error.what() + Line(static_cast<std::size_t>(error.where<char>() - text_.data()));
  }

  solution::XmlNode root() const { return solution::XmlNode(document_.first_node()); }

 private:
  std::string Line(std::size_t offset) const {
    const auto end = text_.begin() + static_cast<std::ptrdiff_t>(std::min(offset, text_.size()));
    return " in line " + std::to_string(1 + std::count(text_.begin(), end, '\n'));
  }

  std::string text_;
  rapidxml::xml_document<> document_;
};

}  // namespace

std::string CheckSnippet(std::string_view xmlType, const std::string& xml) {
  const PasteKind* kind = Find(xmlType);
  if (kind == nullptr) return "unknown xmlType " + std::string(xmlType);
  Snippet snippet(xml);
  if (const std::string fault = snippet.Parse(); !fault.empty()) return "the content is not well-formed XML: " + fault;
  if (snippet.root().name() != "fmxmlsnippet") {
    return "the root element must be fmxmlsnippet, <fmxmlsnippet type=\"FMObjectList\">, not " +
           std::string(snippet.root().name());
  }
  bool isEmpty = true;
  for (const auto node : snippet.root().children()) {
    if (!node.IsElement()) continue;
    isEmpty = false;
    if (!MayHold(*kind, node.name())) {
      return std::string(xmlType) + " may not hold the element " + std::string(node.name()) + Suggestion(node.name());
    }
  }
  return isEmpty ? "the snippet is empty" : "";
}

std::string_view PlaceOf(std::string_view xmlType) {
  const PasteKind* kind = Find(xmlType);
  return kind == nullptr ? "" : kind->place;
}

std::size_t CountObjects(const std::string& xml) {
  Snippet snippet(xml);
  snippet.Parse();
  std::size_t count = 0;
  for (const auto node : snippet.root().children()) count += node.IsElement() ? 1 : 0;
  return count;
}

}  // namespace service::mcp
