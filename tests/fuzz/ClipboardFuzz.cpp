// Whatever stands on the clipboard: the kind is that of the first mark in the rule's order, and a header is dropped
// only in front of a snippet.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "clipboard/Clipboard.h"
#include "clipboard/ClipboardTypes.h"
#include "tests/support/FakePasteboard.h"

namespace {

std::string KindOf(const std::string& xml) {
  const std::pair<const char*, const char*> marks[] = {
      {"<Step", "XMSS"},  {"<Script", "XMSC"}, {"ScriptUUID", "XMSC"}, {"<BaseTable", "XMTB"},
      {"<Table", "XMTB"}, {"<Field", "XMFD"},  {"<ValueList", "XMVL"}, {"<CustomFunction", "XMFN"}};
  for (const auto& [mark, kind] : marks) {
    if (xml.find(mark) != xml.npos) return kind;
  }
  return "XML2";
}

std::string WithoutHeader(const std::string& data) {
  if (data.size() < 5 || data[0] == '<') return data;
  const std::string rest = data.substr(4);
  return rest.find("<fmxmlsnippet") == rest.npos ? data : rest;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  FakePasteboard pasteboard;
  FakePasteboard::Current() = &pasteboard;
  // Also with a snippet surely there, and over more than one of the blocks that are searched at a time.
  for (const std::string& bytes : {text, text + "<fmxmlsnippet>" + text, std::string(40'000, ' ') + text}) {
    if (DetectXmlClipboardType(bytes) != KindOf(bytes)) std::abort();
    pasteboard.Replace({{"Mac-XMSS", bytes}});
    std::string xml, error;
    if (!Clipboard::GetXML("XMSS", xml, error) || xml != WithoutHeader(bytes)) std::abort();
  }
  return 0;
}
