// The idle upkeep with another program on the same clipboard: what that copies becomes pasteable into FileMaker.
#include <filesystem>
#include <fstream>
#include <sstream>

#include "bridge/ClipboardUpkeep.h"
#include "clipboard/Clipboard.h"
#include "clipboard/ClipboardTypes.h"
#include "tests/clipboard/x11/PasteboardFixture.h"

namespace {

using namespace std::string_literals;

using UpkeepOnX11 = PasteboardFixture;

constexpr std::int64_t kIdleIntervalMs = 100;
constexpr int kCallsInHalfASecond = 6;  // one at its start and one at its end

void IdleForHalfASecond() {
  for (int call = 0; call < kCallsInHalfASecond; ++call, AdvanceClock(kIdleIntervalMs)) KeepClipboardConvertible();
}

TEST_F(UpkeepOnX11, CopiedTextBecomesEveryFlavourOfItsKindWithinHalfASecond) {
  for (const auto& file : std::filesystem::directory_iterator(SAMPLES "/snippets")) {
    std::ostringstream read;
    read << std::ifstream(file.path(), std::ios::binary).rdbuf();
    const std::string xml = read.str();
    XclipCopies(xml);
    IdleForHalfASecond();
    for (const auto& type : BuildClipboardTypeCandidates(DetectXmlClipboardType(xml))) {
      EXPECT_EQ(XclipPastes(type), xml) << file.path() << " as " << type;
    }
    EXPECT_EQ(XclipPastes("UTF8_STRING"), xml);
  }
}

TEST_F(UpkeepOnX11, AFlavourWithAHeaderIsReadAndMirroredWithoutIt) {
  const std::string xml = "<fmxmlsnippet type=\"FMObjectList\"><BaseTable name=\"Größe\"/></fmxmlsnippet>";
  XclipCopies("\x4B\0\0\0"s + xml, "Mac-XMTB");
  std::string readBack, error;
  EXPECT_TRUE(Clipboard::GetXML("XMTB", readBack, error));
  EXPECT_EQ(readBack, xml);
  KeepClipboardConvertible();
  for (const char* type : {"Mac-XMTB", "BaseTable", "UTF8_STRING"}) EXPECT_EQ(XclipPastes(type), xml);
}

TEST_F(UpkeepOnX11, OtherTextIsLeftToItsProgram) {
  XclipCopies("just text");
  const auto owner = other_->OwnerOf("CLIPBOARD");
  IdleForHalfASecond();
  EXPECT_EQ(other_->OwnerOf("CLIPBOARD"), owner);
}

}  // namespace
