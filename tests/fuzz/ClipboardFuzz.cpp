// Any content of the clipboard: the kind is that of the first mark in the rule's order, and a header is dropped
// only in front of a snippet.
#include "clipboard/Clipboard.h"
#include "clipboard/ClipboardTypes.h"
#include "fuzz/Fuzz.h"
#include "plugin/clipboard/KindReference.h"
#include "support/FakePasteboard.h"

namespace {

std::string WithoutHeader(const std::string& data) {
  const bool hasHeader = data.size() > 4 && data[0] != '<' && data.find("<fmxmlsnippet", 4) != data.npos;
  return data.substr(hasHeader ? 4 : 0);
}

}  // namespace

void Try(const std::string& input) {
  FakePasteboard pasteboard;
  FakePasteboard::Current() = &pasteboard;
  // Also with a definite snippet, and longer than one block of the search.
  for (const std::string& bytes : {input, input + "<fmxmlsnippet>" + input, std::string(40'000, ' ') + input}) {
    Check(DetectXmlClipboardType(bytes) == reference::KindOf(bytes));
    pasteboard.Replace({{"Mac-XMSS", bytes}});
    std::string xml, error;
    Check(Clipboard::GetXML("XMSS", xml, error) && xml == WithoutHeader(bytes));
  }
}
