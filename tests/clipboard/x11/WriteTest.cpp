// What other programs get of the content that this one wrote, while it serves several of them at once.
#include "tests/clipboard/x11/PasteboardFixture.h"

namespace {

using namespace std::string_literals;

using PasteboardWrites = PasteboardFixture;

TEST_F(PasteboardWrites, EveryTypeAndTheTextUnderItsUsualNames) {
  const Types types = {"CorePasteboardFlavorType 0x584D5353", "Mac-XMSS", "dyn.ah62d4rv4gk8zuxnxnq"};
  const std::string bytes = "<fmxmlsnippet/> \0 Größe"s;
  ASSERT_TRUE(Write(bytes, types));
  for (const std::string target : {types[0].c_str(), types[1].c_str(), types[2].c_str(), "UTF8_STRING",
                                   "text/plain;charset=utf-8", kPlainTextType, "TEXT", "STRING"}) {
    const auto content = other_->Read(target);
    ASSERT_TRUE(content) << target;
    EXPECT_EQ(content->type, target == "TEXT" ? "UTF8_STRING" : target);
    EXPECT_EQ(content->bytes, target == "STRING" ? "<fmxmlsnippet/> \0 Gr\xF6\xDF\x65"s : bytes) << target;
  }
  EXPECT_NE(other_->Read("TIMESTAMP")->bytes, Words({0}));
  for (const char* refused : {"XMSC", "MULTIPLE"}) EXPECT_EQ(other_->Read(refused), std::nullopt);
  EXPECT_EQ(XclipPastes("TARGETS"),
            "TARGETS\nMULTIPLE\nTIMESTAMP\nSAVE_TARGETS\nUTF8_STRING\npublic.utf8-plain-text\n"
            "text/plain;charset=utf-8\nTEXT\nSTRING\nCorePasteboardFlavorType 0x584D5353\nMac-XMSS\n"
            "dyn.ah62d4rv4gk8zuxnxnq\n");
  EXPECT_EQ(Data("Mac-XMSS"), bytes);
  EXPECT_EQ(AllTypes(), (Types{kPlainTextType, types[0], types[1], types[2]}));
}

TEST_F(PasteboardWrites, SeveralTargetsInOneRequest) {
  ASSERT_TRUE(Write("text", {"XMSS"}));
  const auto atom = [&](const char* name) { return other_->Atom(name); };
  const auto pairs = [&](xcb_atom_t b, xcb_atom_t d) {
    return Words({atom("XMSS"), atom("A"), atom("XMSC"), b, atom("TARGETS"), atom("C"), atom("MULTIPLE"), d});
  };
  other_->SetProperty(other_->window(), atom("PAIRS"), atom("ATOM_PAIR"), 32, pairs(atom("B"), atom("D")));
  other_->Ask("MULTIPLE", "PAIRS");
  ASSERT_TRUE(other_->IsAnswered());
  EXPECT_EQ(other_->Take("PAIRS").bytes, pairs(0, 0));
  EXPECT_EQ(other_->Take("A").bytes, "text");
  EXPECT_EQ(other_->Take("C").type, "ATOM");
}

TEST_F(PasteboardWrites, ARequestInTheMiddleOfAWriteSeesItWhole) {
  {
    const auto pasteboard = Pasteboard::Open();
    pasteboard->DeclareTypes(true, {"XMSS", "Script"});
    EXPECT_TRUE(pasteboard->SetData("XMSS", "first"));
    other_->Ask("Script");
    EXPECT_TRUE(pasteboard->SetData("Script", "last"));
    EXPECT_FALSE(pasteboard->SetData("undeclared", "new"));
  }
  ASSERT_TRUE(other_->IsAnswered());
  EXPECT_EQ(other_->Take().bytes, "last");
}

TEST_F(PasteboardWrites, AProgramThatStallsHoldsNobodyUpAndIsDropped) {
  const std::string text = Large(1'000'000);
  ASSERT_TRUE(Write(text, {"XMSS"}));
  other_->Ask("XMSS", "SLOW");
  ASSERT_TRUE(other_->IsAnswered());
  EXPECT_TRUE(XclipPastes("XMSS") == text);

  for (const char* type : {"INCR", "XMSS", "XMSS"}) {
    AdvanceClock(x11::kReceiverPatienceMs - 5000);  // slow, but not too slow
    EXPECT_EQ(other_->Take("SLOW").type, type);
    other_->Next(XCB_PROPERTY_NOTIFY);  // the taking itself
    EXPECT_NE(other_->Next(XCB_PROPERTY_NOTIFY), nullptr);
  }
  AdvanceClock(x11::kReceiverPatienceMs);
  EXPECT_NE(XclipPastes("TARGETS"), "");
  other_->Take("SLOW");
  EXPECT_NE(XclipPastes("TARGETS"), "");
  EXPECT_EQ(other_->Take("SLOW").type, "");
}

TEST_F(PasteboardWrites, AProgramThatVanishesInTheMiddleHarmsNothing) {
  ASSERT_TRUE(Write(Large(1'000'000), {"XMSS"}));
  for (int i = 0; i < 50; ++i) {
    XClient vanishing(server_->display());
    vanishing.Ask("XMSS");
    if (i % 2 == 0) continue;  // before the answer
    ASSERT_TRUE(vanishing.IsAnswered());
    vanishing.Take();
  }
  EXPECT_EQ(XclipPastes("UTF8_STRING").size(), 1'000'000U);
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
