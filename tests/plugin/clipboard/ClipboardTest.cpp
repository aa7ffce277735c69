// The clipboard operations over both views, with every call refused in turn; the functions; the idle upkeep.
#include "clipboard/Clipboard.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <tuple>

#include "bridge/ClipboardUpkeep.h"
#include "clipboard/ClipboardFunctions.h"
#include "clipboard/ClipboardTypes.h"
#include "core/State.h"
#include "support/FakePasteboard.h"
#include "support/Rows.h"
#include "support/ScriptedHost.h"

namespace {

using namespace std::string_literals;
using Names = std::vector<std::string>;

std::int64_t now = 0;

const Names kStepTypes = BuildClipboardTypeCandidates("XMSS");
constexpr char kSnippet[] =
    "<?xml version=\"1.0\"?><fmxmlsnippet type=\"FMObjectList\"><Step id=\"93\"/></fmxmlsnippet>";
const FakePasteboard::Item kCopiedText = {{FakePasteboard::kText, kSnippet}};

struct ClipboardTest : testing::Test {
  ClipboardTest() {
    FakePasteboard::Current() = &fake;
    now = 1000000;
    g_lastMirroredClipboardHash = g_lastPreparedClipboardHash = 0;
    g_lastClipboardPrepareMs = 0;
  }

  // Everything on the clipboard is the XML, under the names of its kind and as text.
  void ExpectXml(const std::string& code, const std::string& xml) {
    const Names candidates = BuildClipboardTypeCandidates(code);
    for (const auto& type : candidates) EXPECT_EQ(fake.Bytes(type), xml) << type;
    EXPECT_EQ(fake.Text(), xml);
    EXPECT_EQ(fake.items.size(), 1u);
    EXPECT_EQ(fake.items.front().size(), candidates.size() + 1);
  }

  // Idle messages, 100 ms apart.
  void Idle(int calls) {
    for (int i = 0; i < calls; ++i, now += 100) KeepClipboardConvertible();
  }
  // An idle message after another program has replaced the content.
  void IdleAfter(const FakePasteboard::Item& copied) {
    fake.Replace(copied);
    KeepClipboardConvertible();
  }

  FakePasteboard fake;
  ScriptedHost host;
};

TEST_F(ClipboardTest, WritesTheBytesUnchangedUnderEveryNameOfTheKind) {
  for (const bool older : {true, false}) {
    fake.hasItems = older;
    for (const auto& xml : {std::string(kSnippet), "\xEF\xBB\xBF\r\n<x/>\r"s, "a\0b"s, std::string(1 << 20, 'x')}) {
      std::string error, read;
      EXPECT_TRUE(Clipboard::SetXML("XMSS", xml, error));
      EXPECT_EQ(fake.calls.back(), older ? "SynchronizeItems" : "SetString");
      ExpectXml("XMSS", xml);
      EXPECT_TRUE(Clipboard::GetXML("XMSS", read, error));
      EXPECT_EQ(read, xml);
      EXPECT_EQ(error, "");
    }
  }
}

TEST_F(ClipboardTest, FallsBackToTheGeneralViewWhateverTheOlderOneRefuses) {
  Names refusals = {"OpenItems", "ClearItems", "PutFlavor public.utf8-plain-text"};
  for (const auto& type : kStepTypes) refusals.push_back("PutFlavor " + type);
  for (const auto& refusal : refusals) {
    fake.refused = {refusal};
    std::string error;
    EXPECT_TRUE(Clipboard::SetXML("XMSS", kSnippet, error)) << refusal;
    EXPECT_EQ(error, "");
    ExpectXml("XMSS", kSnippet);
    EXPECT_EQ(fake.calls.back(), "SetString") << refusal;
  }
}

TEST_F(ClipboardTest, NamesTheLastTypeThatTheGeneralViewRefusesAndWritesTheOthers) {
  fake.hasItems = false;
  for (const auto& type : kStepTypes) {
    fake.refused = {"SetData " + type};
    std::string error;
    EXPECT_FALSE(Clipboard::SetXML("XMSS", kSnippet, error));
    EXPECT_EQ(error, "ERROR: NSPasteboard setData failed for type: " + type);
    EXPECT_EQ(fake.items.front().size(), kStepTypes.size()) << "all but one, and the text";
  }
}

TEST_F(ClipboardTest, WritesNeitherTextNorTypeNamesThatAreNotUtf8) {
  fake.hasItems = false;
  std::string error;
  EXPECT_TRUE(Clipboard::SetXML("XMS\xFF", kSnippet, error));
  EXPECT_EQ(fake.items.front(), (FakePasteboard::Item{{"CorePasteboardFlavorType 0x584D53FF", kSnippet},
                                                      {"public.utf8-plain-text", kSnippet}}));
  EXPECT_TRUE(Clipboard::SetXML("XMSS", "<\xFF>", error));
  EXPECT_EQ(fake.Bytes("Mac-XMSS"), "<\xFF>");
  EXPECT_EQ(fake.items.front().size(), kStepTypes.size());
  EXPECT_FALSE(Clipboard::SetText("\xC3", error));
  EXPECT_EQ(fake.Bytes("Mac-XMSS"), "<\xFF>") << "a text that cannot be written leaves the clipboard alone";
}

TEST_F(ClipboardTest, ReadsItemsBeforeCandidates) {
  fake.items = {{{"Other", "0"}, {"Mac-ScriptStep", "first item, last name"}},
                {{"CorePasteboardFlavorType 0x584D5353", "second item, first name"}}};
  std::string xml, error;
  Clipboard::GetXML("XMSS", xml, error);
  EXPECT_EQ(xml, "first item, last name");
  for (const char* refusal : {"OpenItems", "ItemCount"}) {
    fake.refused = {refusal};
    Clipboard::GetXML("XMSS", xml, error);
    EXPECT_EQ(xml, "second item, first name") << "the general view goes by candidates";
  }
  fake.items.front() = {{"Other", "0"}};
  fake.refused = {"DataForType CorePasteboardFlavorType 0x584D5353"};
  Clipboard::GetXML("XMSS", xml, error);
  EXPECT_EQ(xml, "second item, first name") << "the older view reads to the last item";
}

TEST_F(ClipboardTest, DropsTheHeaderOnlyInFrontOfASnippet) {
  const std::pair<std::string, std::string> cases[] = {
      {"\x7F\0\0\0<fmxmlsnippet>"s, "<fmxmlsnippet>"},
      {"\x7F\0\0\0 <?xml?><fmxmlsnippet>"s, " <?xml?><fmxmlsnippet>"},
      {"<abc<fmxmlsnippet>", "<abc<fmxmlsnippet>"},
      {"\x7F\0\0\0<other>"s, "\x7F\0\0\0<other>"s},
      {"", ""},
  };
  for (const bool older : {true, false}) {
    fake.hasItems = older;
    for (const auto& [data, expected] : cases) {
      fake.Replace({{"Mac-XMSS", data}});
      std::string xml = "before", error;
      EXPECT_TRUE(Clipboard::GetXML("XMSS", xml, error));
      EXPECT_EQ(xml, expected);
    }
  }
}

TEST_F(ClipboardTest, TheFunctionsAnswer) {
  const std::map<std::string, fmx::ExtPluginType> functions = {
      {"ClipboardFormats", Do_ClipboardFormats}, {"GetTextClipboard", Do_GetTextClipboard},
      {"GetXMLClipboard", Do_GetXMLClipboard},   {"PrepareXMLClipboard", Do_PrepareXMLClipboard},
      {"SetTextClipboard", Do_SetTextClipboard}, {"SetXMLClipboard", Do_SetXMLClipboard},
  };
  ExpectRows(DATA "/calls.txt", [&](const auto& call) { return CallRow(functions, call); });
  fake.refused = {"OpenItems", "SetData AUTO"};
  EXPECT_EQ(CallHandler(Do_PrepareXMLClipboard, {"AUTO"}), "ERROR: NSPasteboard setData failed for type: AUTO");
  fake.refused = {"OpenItems", "SetString"};
  EXPECT_EQ(CallHandler(Do_SetXMLClipboard, {"XMSC", "<x/>"}), "ERROR: NSPasteboard setString failed");
  EXPECT_EQ(CallHandler(Do_SetTextClipboard, {"x"}), "ERROR: NSPasteboard setString failed");
}

TEST_F(ClipboardTest, ProbesKindsInTheirOwnOrder) {
  FakePasteboard::Item item;
  for (const char* kind : {"XMLO", "XMVL", "XMFN", "XMFD", "XMTB", "XML2", "XMSC", "XMSS"}) {
    item.emplace_back("Mac-"s + kind, kind);
    fake.Replace(item);
    std::string code, xml, error = "of an earlier call";
    EXPECT_TRUE(ProbeFileMakerClipboardXML(code, xml, error));
    EXPECT_EQ(code + xml + error, kind + ""s + kind);
  }
}

TEST_F(ClipboardTest, IdlePreparesEachTextOnceAtMostEveryHalfSecond) {
  IdleAfter(kCopiedText);
  ExpectXml("XMSS", kSnippet);
  EXPECT_EQ(fake.writes, 1);

  // A program that rewrites the same text, with whatever flavour, does not make both rewrite the clipboard forever.
  for (int i = 0; i < 20; ++i) {
    now += 100;
    IdleAfter({{FakePasteboard::kText, kSnippet}, {"Mac-XMTB", "<x/>"}});
  }
  EXPECT_EQ(fake.writes, 1);

  EXPECT_EQ(CallHandler(Do_SetTextClipboard, {"<fmxmlsnippet><Field/></fmxmlsnippet>"}), "OK");
  fake.writes = 1;
  const auto last = g_lastClipboardPrepareMs;
  now = last + 499;
  KeepClipboardConvertible();
  EXPECT_EQ(fake.writes, 1);
  now = last + 500;
  KeepClipboardConvertible();
  EXPECT_EQ(fake.writes, 2);
  ExpectXml("XMFD", "<fmxmlsnippet><Field/></fmxmlsnippet>");
}

TEST_F(ClipboardTest, IdleLeavesObjectsTheKindThatTheyWereWrittenAs) {
  EXPECT_EQ(CallHandler(Do_SetXMLClipboard, {"XMSC", kSnippet}), "OK");
  Idle(20);
  ExpectXml("XMSC", kSnippet);
  EXPECT_EQ(fake.writes, 1);
  IdleAfter(kCopiedText);
  ExpectXml("XMSS", kSnippet);
}

TEST_F(ClipboardTest, IdleMirrorsFileMakersOwnFlavourUnderEveryName) {
  now = 100;  // preparation is not due
  IdleAfter({{"Mac-XMTB", "\x40\0\0\0<fmxmlsnippet><BaseTable/></fmxmlsnippet>"s}, {"picture", "p"}});
  ExpectXml("XMTB", "<fmxmlsnippet><BaseTable/></fmxmlsnippet>");
  Idle(20);
  EXPECT_EQ(fake.writes, 1) << "what mirroring wrote is neither mirrored nor prepared again";

  IdleAfter({{"Mac-XMTB", "<fmxmlsnippet><BaseTable/></fmxmlsnippet>"}});
  EXPECT_EQ(fake.writes, 1) << "the same content again, from any program";
  IdleAfter({{"Mac-XMSC", "<fmxmlsnippet><BaseTable/></fmxmlsnippet>"}});
  EXPECT_EQ(fake.writes, 2) << "another kind is another content";
}

TEST_F(ClipboardTest, IdleTriesWhatFailedAgain) {
  fake.hasItems = false;
  for (const char* refusal : {"SetString", "DeclareTypes"}) {
    for (const auto& [copied, code, tries] : {std::tuple(kCopiedText, "XMSS", 2), {{{"Table", "<x/>"}}, "XMTB", 10}}) {
      g_lastMirroredClipboardHash = g_lastPreparedClipboardHash = 0;
      g_lastClipboardPrepareMs = 0;
      fake.Replace(copied);
      fake.calls.clear();
      fake.refused = {refusal};
      for (int i = 0; i < 10; ++i, now += 100) {
        KeepClipboardConvertible();
        if (fake.isOurs) fake.Replace(copied);
      }
      EXPECT_EQ(std::count(fake.calls.begin(), fake.calls.end(), "DeclareTypes"), tries) << refusal << " " << code;
      fake.refused.clear();
      KeepClipboardConvertible();
      ExpectXml(code, copied.front().second);
    }
  }
}

TEST_F(ClipboardTest, IdleKeepsContentTogetherThatAnotherProgramReplacesMeanwhile) {
  const FakePasteboard::Item copies[] = {kCopiedText, {{"Mac-XMTB", "<fmxmlsnippet><BaseTable/></fmxmlsnippet>"}}};
  for (const bool textFirst : {true, false}) {
    std::size_t calls = 0;  // made by an undisturbed call, which comes first
    for (std::size_t call = 0; call <= calls; ++call, now += 1000) {
      fake.calls.clear();
      fake.onCall = [&] {
        if (fake.calls.size() == call) fake.Replace(copies[textFirst]);
      };
      IdleAfter(copies[!textFirst]);
      calls = std::max(calls, fake.calls.size());
      fake.onCall = nullptr;
      for (int i = 0; i < 3; ++i, now += 1000) KeepClipboardConvertible();
      ExpectXml(fake.Bytes("Mac-XMTB").empty() ? "XMSS" : "XMTB", fake.Text());
      g_lastMirroredClipboardHash = g_lastPreparedClipboardHash = 0;
    }
    EXPECT_GT(calls, 8u) << "it met a whole write";
  }
}

TEST_F(ClipboardTest, IdleReadsAndWritesOnlyAfterAChange) {
  const struct {
    const char* copied;
    FakePasteboard::Item item;
    bool isReported;
    int leastReads, mostReads, writes;  // in ten seconds
  } cases[] = {
      {"a text", {{FakePasteboard::kText, "just text"}}, true, 1, 1, 0},
      {"a text where changes are not reported", {{FakePasteboard::kText, "just text"}}, false, 100, 100, 0},
      {"XML as text, read before, for and after its preparation", kCopiedText, true, 3, 3, 1},
      {"a table of FileMaker's, read for mirroring and after it", {{"Mac-XMTB", "<fmxmlsnippet/>"}}, true, 3, 40, 1},
      {"a picture, ever more rarely", {{"picture", "p"}}, true, 1, 6, 0},
      {"nothing", {}, true, 1, 6, 0},
      {"an iPhone's XML", {{FakePasteboard::kText, kSnippet}, {"com.apple.is-remote-clipboard", ""}}, true, 0, 0, 0},
  };
  for (const auto& c : cases) {
    fake.change.reset();
    if (c.isReported) fake.change = FakePasteboard::NextChange();
    fake.Replace(c.item);
    fake.reads = fake.writes = 0;
    g_lastClipboardPrepareMs = now - 100;
    Idle(100);
    EXPECT_TRUE(fake.reads >= c.leastReads && fake.reads <= c.mostReads) << c.copied << ": " << fake.reads;
    EXPECT_EQ(fake.writes, c.writes) << c.copied;
  }
}

TEST_F(ClipboardTest, IdleSearchesNoItemForTypesThatThePasteboardDoesNotList) {
  fake.Replace({{FakePasteboard::kText, "a file"}, {"public.file-url", "file:///a"}});
  fake.items.resize(2000, {{"public.file-url", "file:///b"}});
  Idle(100);
  EXPECT_EQ(fake.reads, 1);
  EXPECT_EQ(std::count(fake.calls.begin(), fake.calls.end(), "CopyFlavor Mac-XMSS"), 0);
  fake.items.front() = {{"dyn.ah62d4rv4gk8zuxn0mu", "a name of macOS's for XMVL"}};
  fake.change = FakePasteboard::NextChange();
  KeepClipboardConvertible();
  EXPECT_EQ(std::count(fake.calls.begin(), fake.calls.end(), "CopyFlavor Mac-XMSS"), 2000) << "else every item is";
}

// Programs declare or clear first, and add later. The system may not report that.
TEST_F(ClipboardTest, IdleFindsWhatIsAddedWithinTwoSeconds) {
  constexpr char kTable[] = "<fmxmlsnippet><BaseTable/></fmxmlsnippet>";
  for (const auto& before : {FakePasteboard::Item{}, {{"Mac-XMTB", ""}}, {{FakePasteboard::kText, "Parts"}}}) {
    g_lastMirroredClipboardHash = 0;
    IdleAfter(before);
    fake.items = {{{"Mac-XMTB", kTable}}};
    Idle(21);
    ExpectXml("XMTB", kTable);
  }
}

}  // namespace

std::int64_t SteadyMilliseconds() { return now; }
