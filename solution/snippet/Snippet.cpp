#include "snippet/Snippet.h"

#include <algorithm>
#include <exception>
#include <iterator>
#include <vector>

#include "Utf8.h"
#include "canonical/Words.h"
#include "export/ParsedXml.h"
#include "snippet/ObjectText.h"
#include "snippet/SnippetSteps.h"

namespace solution {
namespace {

constexpr std::string_view kRoot = "fmxmlsnippet";
constexpr std::size_t kLargest = 32 << 20, kLongestText = 1 << 20, kLongestTitle = 120;

struct Code {
  std::string_view tag, xmlType;
};
constexpr Code kCodes[] = {
    {"Step", "XMSS"},      {"Script", "XMSC"},         {"BaseTable", "XMTB"}, {"Field", "XMFD"},
    {"ValueList", "XMVL"}, {"CustomFunction", "XMFN"}, {"Object", "XML2"},    {"Theme", "XMTH"},
};

std::vector<XmlNode> ObjectsIn(XmlNode root) {
  std::vector<XmlNode> objects;
  for (const XmlNode node : root.children()) {
    if (node.name() == "Layout") {
      for (const XmlNode object : node.children("Object")) objects.push_back(object);
    } else if (node.IsElement()) {
      objects.push_back(node);
    }
  }
  return objects;
}

// Folders contain scripts or custom functions. An empty one could be of either; scripts are in folders more often.
std::string_view TagOf(XmlNode object) {
  while (object.name() == "Group") object = object.first_child();
  return object ? object.name() : "Script";
}

std::string TypeOf(XmlNode object, bool isOldLayout) {
  const std::string_view tag = TagOf(object);
  const auto code =
      std::find_if(std::begin(kCodes), std::end(kCodes), [tag](const Code& known) { return known.tag == tag; });
  if (code == std::end(kCodes)) return {};
  return tag == "Object" && isOldLayout ? "XMLO" : std::string(code->xmlType);
}

// The clipboard may contain control characters and ill-formed UTF-8, which readable text must not.
std::string Clean(std::string text) {
  std::replace_if(
      text.begin(), text.end(), [](unsigned char c) { return c < 0x20 && c != '\n' && c != '\t'; }, ' ');
  return ReplaceIllFormedUtf8(text);
}

std::string TitleOf(const std::vector<XmlNode>& objects) {
  if (objects.empty()) return "Empty snippet";
  std::string title = ObjectTitle(objects.front());
  const bool isSteps = objects.front().name() == "Step" && objects.size() > 1;
  if (isSteps) {
    const auto titled = std::find_if(objects.begin(), objects.end(), [](XmlNode o) { return !ObjectTitle(o).empty(); });
    title = titled == objects.end() ? std::string() : ObjectTitle(*titled);
  }
  title = title.substr(0, title.find('\n'));
  Cut(title, kLongestTitle);
  if (isSteps) return Counted(objects.size(), "script step") + (title.empty() ? "" : ": " + title);
  return objects.size() == 1 ? title : title + " and " + std::to_string(objects.size() - 1) + " more";
}

std::string TextOf(XmlNode root, const std::vector<XmlNode>& objects) {
  const std::string_view tag = objects.empty() ? "" : objects.front().name();
  if (tag == "Step") return JoinLines(SnippetSteps(root));
  const bool areShort = tag == "Field" || tag == "Object";
  std::string text;
  for (const XmlNode object : objects) {
    if (text.size() > kLongestText) break;
    if (!areShort && !text.empty()) text += '\n';
    text += ObjectText(object);
  }
  return text;
}

Snippet Read(std::string bytes) {
  if (bytes.size() > kLargest) throw Refusal{"is too large to be read"};
  std::vector<std::string> notes;
  std::string text = DecodeExport(std::move(bytes), notes);
  const bool isOldLayout = text.find("<ObjectStyle") != std::string::npos;
  const ParsedXml xml(std::move(text));
  if (xml.root().name() != kRoot) {
    throw Refusal{"is not clipboard XML of FileMaker: its root element is " + std::string(xml.root().name())};
  }
  const auto objects = ObjectsIn(xml.root());
  Snippet snippet;
  if (!objects.empty()) snippet.xmlType = TypeOf(objects.front(), isOldLayout);
  snippet.title = Clean(TitleOf(objects));
  snippet.text = TextOf(xml.root(), objects);
  Cut(snippet.text, kLongestText);
  snippet.text = Clean(std::move(snippet.text));
  return snippet;
}

}  // namespace

bool IsSnippet(std::string_view text) { return text.find("<fmxmlsnippet") != std::string_view::npos; }

std::optional<Snippet> ReadSnippet(std::string bytes, std::string& error) {
  try {
    return Read(std::move(bytes));
  } catch (const Refusal& refusal) {
    error = Clean(refusal.reason);
  } catch (const std::exception&) {  // only memory allocation throws
    error = "is too large for the available memory";
  }
  return std::nullopt;
}

}  // namespace solution
