// The clipboard functions of the plug-in binary, on the clipboard inside the process that it uses without an X server.
#include "plugin/binary/PluginBinary.h"

namespace {

TEST_F(PluginBinary, AnswersTheClipboardFunctionsWithTheirOwnHandlers) {
  Initialise();
  const std::string xml = "<fmxmlsnippet/>";
  const struct {
    const char16_t* name;
    std::vector<std::string> arguments;
    std::string expected;
  } cases[] = {
      {u"Varnix.SetTextClipboard", {xml}, "OK"},
      {u"Varnix.PrepareXMLClipboard", {"ABCD"}, "OK: ABCD"},
      {u"Varnix.ClipboardFormats", {}, "public.utf8-plain-text\nCorePasteboardFlavorType 0x41424344\nMac-ABCD\nABCD\n"},
      {u"Varnix.GetXMLClipboard", {"ABCD"}, xml},
      {u"Varnix.SetXMLClipboard", {"EFGH", "<x/>"}, "OK"},
      {u"Varnix.GetTextClipboard", {}, "<x/>"},
  };
  for (const auto& c : cases) EXPECT_EQ(Call(c.name, c.arguments), c.expected) << calc::ToUtf8(c.name);
}

}  // namespace
