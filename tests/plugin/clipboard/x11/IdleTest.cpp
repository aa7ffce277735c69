// Idle calls on a real server: what another program copies is read when it is copied, and not again.
#include <thread>

#include "bridge/IdleLoop.h"
#include "clipboard/ReadingLimit.h"
#include "core/Clock.h"
#include "plugin/clipboard/x11/PasteboardFixture.h"

namespace {

struct PasteboardIdle : PasteboardFixture {
  static void Idle(int calls) {
    FMX_ExternCallStruct call{};
    for (int i = 0; i < calls; ++i) {
      AdvanceClock(100);
      Do_PluginIdle(&call);
    }
  }
};

TEST_F(PasteboardIdle, ReadsAnotherProgramsClipboardWhenItChanges) {
  const FakeOwner owner(server_->display(), Manner::kObliging, {"UTF8_STRING"}, "theirs");
  Idle(60);
  const int requests = owner.Requests();
  EXPECT_GT(requests, 0);
  Idle(60);
  EXPECT_EQ(owner.Requests(), requests);
  // The very next call sees a change, however soon it comes.
  for (int i = 0; i < 100; ++i) {
    const std::string xml = "<Step id=\"" + std::to_string(i) + "\"/>";
    const FakeOwner next(server_->display(), Manner::kObliging, {"Mac-XMSS"}, xml);
    Idle(1);
    ASSERT_EQ(Data("Mac-ScriptStep"), xml);
    Idle(1);  // looks at what was written
  }
  EXPECT_EQ(XclipPastes("Mac-ScriptStep"), "<Step id=\"99\"/>");
}

TEST_F(PasteboardIdle, WaitsForASlowProgramNoLongerThanTheLimit) {
  const std::string text(30, 'x');
  for (const auto manner : {Manner::kEndless, Manner::kTrickles}) {
    const FakeOwner slow(server_->display(), manner, {"UTF8_STRING", "STRING", "Mac-XMSS"}, text);
    const std::int64_t start = SteadyMilliseconds();
    Idle(1);
    EXPECT_LT(SteadyMilliseconds() - start, ReadingLimit::kReadingLimitMs + 500);
    Idle(30);
    EXPECT_LT(SteadyMilliseconds() - start, ReadingLimit::kReadingLimitMs + 4500) << "asked again too soon";
    if (manner == Manner::kTrickles) {
      EXPECT_EQ(Text(), text) << "functions wait as long as data comes";
    }
  }
}

TEST_F(PasteboardIdle, SeesWhatThisProgramWritesAndWhatANewServerHolds) {
  const std::string xml = "<fmxmlsnippet><Step/></fmxmlsnippet>";
  ConnectTo("");
  Idle(60);
  ASSERT_TRUE(Write(xml, {}));
  Idle(5);
  EXPECT_EQ(Data("Mac-XMSS"), xml);
  Idle(60);
  const FakeOwner owner(server_->display(), Manner::kObliging, {"Mac-XMTB"}, "<x/>");
  ConnectTo(server_->display());
  Idle(1);
  EXPECT_EQ(Data("Mac-Table"), "<x/>");
}

TEST_F(PasteboardIdle, ReadsOnEveryCallWhereTheServerReportsNoChanges) {
  server_.emplace("-extension XFIXES");
  other_.emplace(server_->display());
  ConnectTo(server_->display());
  const FakeOwner owner(server_->display(), Manner::kObliging, {"UTF8_STRING"}, "theirs");
  Idle(60);
  EXPECT_GE(owner.Requests(), 60);
}

}  // namespace
