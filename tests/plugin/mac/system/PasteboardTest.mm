// The clipboard operations on the system's pasteboard server, on a pasteboard that no other program knows.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "clipboard/Clipboard.h"
#include "clipboard/ClipboardTypes.h"
#include "clipboard/SystemPasteboard_mac.h"

namespace {

using namespace std::string_literals;

constexpr char kSnippet[] = "<fmxmlsnippet type=\"FMObjectList\"><Step id=\"93\"/></fmxmlsnippet>";

NSPasteboard* g_own = nil;

struct OwnPasteboard : testing::Environment {
  void SetUp() override { g_own = [[NSPasteboard pasteboardWithUniqueName] retain]; }
  void TearDown() override {
    [g_own releaseGlobally];
    [g_own release];
  }
};
[[maybe_unused]] auto* const g_ownPasteboard = testing::AddGlobalTestEnvironment(new OwnPasteboard);

}  // namespace

NSPasteboard* SystemPasteboard() { return g_own; }
CFStringRef SystemPasteboardName() { return static_cast<CFStringRef>([g_own name]); }

namespace {

struct PasteboardTest : testing::Test {
  ~PasteboardTest() override { [pool_ drain]; }

  /// As another program does.
  static void Copy(NSString* type, const std::string& bytes) {
    [g_own declareTypes:@[ type ] owner:nil];
    [g_own setData:[NSData dataWithBytes:bytes.data() length:bytes.size()] forType:type];
  }
  static std::string Xml(const std::string& code) {
    std::string xml, error;
    EXPECT_TRUE(Clipboard::GetXML(code, xml, error));
    return xml;
  }
  static std::string Text() {
    std::string text, error;
    EXPECT_TRUE(Clipboard::GetText(text, error));
    return text;
  }

  std::string error_;
  NSAutoreleasePool* const pool_ = [[NSAutoreleasePool alloc] init];
};

TEST_F(PasteboardTest, ReadsTheBytesThatItHasWritten) {
  for (const char* code : {"XMSS", "XMSC", "XML2", "XMTB", "XMFD", "XMFN", "XMVL", "XMLO"}) {
    for (const auto& xml : {std::string(kSnippet), "\xEF\xBB\xBF\r\n<x/>\r"s, "a\0b"s, std::string(1 << 20, 'x')}) {
      EXPECT_TRUE(Clipboard::SetXML(code, xml, error_)) << code;
      EXPECT_TRUE(Xml(code) == xml) << code;
      EXPECT_TRUE(IncludeFileMakerType(Clipboard::Types())) << code;
    }
    Clipboard::SetXML(code, kSnippet, error_);
    EXPECT_EQ(Text(), kSnippet) << code;
  }
  EXPECT_EQ(error_, "");
}

TEST_F(PasteboardTest, ReadsWhatAnotherProgramHasCopied) {
  Copy(@"Mac-XMSS", kSnippet);
  EXPECT_EQ(Xml("XMSS"), kSnippet);
  EXPECT_EQ(Xml("XMSC"), "");
  Copy(NSPasteboardTypeString, "gr\xC3\xBC\xC3\x9F");
  EXPECT_EQ(Text(), "gr\xC3\xBC\xC3\x9F");
  EXPECT_EQ(Xml("XMSS"), "");
}

TEST_F(PasteboardTest, RefusesTextThatIsNotUtf8AndLeavesTheRestAlone) {
  for (const auto& text : {"gr\xC3\xBC\xC3\x9F \xF0\x9F\x98\x80"s, ""s}) {
    EXPECT_TRUE(Clipboard::SetText(text, error_));
    EXPECT_EQ(Text(), text);
  }
  Clipboard::SetText("kept", error_);
  EXPECT_FALSE(Clipboard::SetText("\xC3", error_));
  EXPECT_EQ(Text(), "kept");
}

TEST_F(PasteboardTest, ItsNumberChangesWithEveryWriteAndOnlyThen) {
  Clipboard::SetText("a", error_);
  auto before = Clipboard::ChangeCount();
  EXPECT_EQ(Clipboard::ChangeCount(), before);
  Clipboard::SetText("a", error_);
  EXPECT_NE(Clipboard::ChangeCount(), before);
  before = Clipboard::ChangeCount();
  Clipboard::SetXML("XMSS", kSnippet, error_);
  EXPECT_NE(Clipboard::ChangeCount(), before);
  Copy(NSPasteboardTypeString, "a");
  before = Clipboard::ChangeCount();
  [g_own addTypes:@[ @"Mac-XMSS" ] owner:nil];
  EXPECT_NE(Clipboard::ChangeCount(), before) << "a program that adds to what it has copied";
}

}  // namespace
