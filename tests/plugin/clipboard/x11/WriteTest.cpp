// What other programs get of the content that this one wrote, while it serves several of them at once.
#include "plugin/clipboard/x11/PasteboardFixture.h"

namespace {

using namespace std::string_literals;

using PasteboardWrites = PasteboardFixture;

TEST_F(PasteboardWrites, EveryTypeAndTheTextUnderItsUsualNames) {
  const Types types = {"CorePasteboardFlavorType 0x584D5353", "Mac-XMSS", "dyn.ah62d4rv4gk8zuxnxnq"};
  const std::string bytes = "<fmxmlsnippet/> \0 Größe"s;
  ASSERT_TRUE(Write(bytes, types));
  for (const std::string target : {types[0].c_str(), types[1].c_str(), types[2].c_str(), "UTF8_STRING",
                                   "text/plain;charset=utf-8", kPlainTextType, "TEXT", "STRING"}) {
    EXPECT_EQ(XclipPastes(target), target == "STRING" ? "<fmxmlsnippet/> \0 Gr\xF6\xDF\x65"s : bytes) << target;
  }
  EXPECT_EQ(XclipPastes("TARGETS"),
            "TARGETS\nMULTIPLE\nTIMESTAMP\nSAVE_TARGETS\nUTF8_STRING\npublic.utf8-plain-text\n"
            "text/plain;charset=utf-8\nTEXT\nSTRING\nCorePasteboardFlavorType 0x584D5353\nMac-XMSS\n"
            "dyn.ah62d4rv4gk8zuxnxnq\n");
  EXPECT_EQ(Data("Mac-XMSS"), bytes);
  EXPECT_EQ(AllTypes(), (Types{kPlainTextType, types[0], types[1], types[2]}));
}

TEST_F(PasteboardWrites, ProgramsThatStallOrVanishHoldNobodyUp) {
  const std::string text = Large(1'000'000);
  ASSERT_TRUE(Write(text, {"XMSS"}));
  other_->Ask("XMSS");  // and takes nothing of it
  for (int i = 0; i < 50; ++i) {
    XClient vanishing(server_->display());
    vanishing.Ask("XMSS");
    if (i % 2 == 0) vanishing.NextOfAny(kPatienceMs);  // the answer, which it leaves
  }
  EXPECT_TRUE(XclipPastes("XMSS") == text);
  ASSERT_TRUE(Write("new", {"XMSS"}));
  EXPECT_EQ(XclipPastes("XMSS"), "new");
}

TEST_F(PasteboardWrites, AnotherProgramTakesTheClipboardAndGivesItBack) {
  ASSERT_TRUE(Write("ours", {"XMSS"}));
  XclipCopies("theirs");
  while (Text() == "ours") continue;
  EXPECT_EQ(Text(), "theirs");
  EXPECT_EQ(AllTypes(), Types{kPlainTextType});
  ASSERT_TRUE(Write("ours again", {}));
  EXPECT_EQ(XclipPastes("UTF8_STRING"), "ours again");
}

}  // namespace
