// The pasteboard of this process on a private X server, with xclip and clients of the test as the other programs.
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <optional>

#include "bridge/IdleLoop.h"
#include "clipboard/Pasteboard.h"
#include "clipboard/PasteboardContent.h"
#include "clipboard/ReadingLimit.h"
#include "clipboard/x11/SystemClipboard.h"
#include "core/Clock.h"
#include "plugin/clipboard/x11/FakeOwner.h"
#include "plugin/clipboard/x11/XServer.h"
#include "support/Entries.h"
#include "support/Process.h"

namespace {

using namespace std::string_literals;
using Types = std::vector<std::string>;

std::atomic<std::int64_t> g_now = 1'000'000;

bool Write(const std::string& text, const Types& types) {
  const auto pasteboard = Pasteboard::Open();
  pasteboard->DeclareTypes(true, types);
  bool written = true;
  for (const auto& type : types) written = pasteboard->SetData(type, text) && written;
  return pasteboard->SetString(text) && written;
}
std::string Text() { return Pasteboard::Open()->String(); }
Types AllTypes() { return Pasteboard::Open()->Types(); }
std::string Data(const std::string& type) {
  std::string bytes = "none";
  Pasteboard::Open()->DataForType(type, bytes);
  return bytes;
}
void Idle(int calls) {
  FMX_ExternCallStruct call{};
  for (int i = 0; i < calls; ++i) {
    AdvanceClock(100);
    Do_PluginIdle(&call);
  }
}

struct X11Clipboard : testing::Test {
  void SetUp() override {
    ConnectTo("");
    Pasteboard::Open()->DeclareTypes(false, {});  // removes what an earlier test has left
    UseNewServer();
  }
  static void ConnectTo(const std::string& display) {
    setenv("DISPLAY", display.c_str(), 1);
    // The first call may come before the thread has noticed the end of the last server; the next waits for that.
    for (int i = 0; i < 3; ++i) Pasteboard::Open()->ChangeCount();
    AdvanceClock(x11::kReconnectPauseMs);
  }
  void UseNewServer(const std::string& missingExtension = "none") {
    other_.reset();
    server_.emplace(missingExtension);
    ASSERT_NE(server_->display(), ":") << "Xvfb does not start";
    other_.emplace(server_->display());
    ConnectTo(server_->display());
  }
  std::string XclipPastes(const std::string& target) const {
    return RunProcess({XCLIP, "-d", server_->display(), "-o", "-selection", "clipboard", "-t", target}).output;
  }

  std::optional<XServer> server_;
  std::optional<XClient> other_;  // another program, which keeps the server running
};

TEST_F(X11Clipboard, ReadsTypesAndTextOfAnotherProgram) {
  const struct {
    Types targets;
    std::string bytes;
    Types types;
    std::string text;
  } cases[] = {
      {{"UTF8_STRING"}, "Größe \xE2\x82\xAC\n", {kPlainTextType}, "Größe \xE2\x82\xAC\n"},
      {{"STRING"}, "Gr\xF6\xDF\x65", {"STRING"}, "Größe"},
      {{"UTF8_STRING"}, "\xFF\xFE", {kPlainTextType}, ""},
      {{"Mac-XMSS"}, std::string(1'000'000, '\xE9'), {"Mac-XMSS"}, ""},
      {{"TARGETS", "XMSS", "TIMESTAMP", "MULTIPLE", "UTF8_STRING", "SAVE_TARGETS", "DELETE", "XMSS", kPlainTextType,
        "text/plain;charset=utf-8", "not UTF-8: \xFF"},
       "text",
       {"XMSS", kPlainTextType, "text/plain;charset=utf-8"},
       "text"},
  };
  for (const auto& c : cases) {
    const FakeOwner owner(server_->display(), Manner::kObliging, c.targets, c.bytes);
    EXPECT_EQ(AllTypes(), c.types);
    EXPECT_EQ(Text(), c.text);
    EXPECT_TRUE(Data(c.types[0]) == c.bytes) << c.types[0];
    EXPECT_EQ(Data("Mac-XMSX"), "none");
  }
}

// Whatever an owner does wrong, its clipboard counts as empty, and the next owner's is read.
TEST_F(X11Clipboard, ReadsNothingFromABrokenOwner) {
  for (const auto manner : {Manner::kSilent, Manner::kRefusing, Manner::kTrickles, Manner::kEndless}) {
    std::optional<FakeOwner> owner(std::in_place, server_->display(), manner, Types{"UTF8_STRING"},
                                   std::string(99, 'x'));
    EXPECT_EQ(Text() + Text(), "") << static_cast<int>(manner);
    if (manner == Manner::kSilent) {
      EXPECT_EQ(owner->Requests(), 1) << "it is left alone";
      AdvanceClock(x11::kStalledOwnerPauseMs);
      EXPECT_EQ(Text(), "");
      EXPECT_EQ(owner->Requests(), 2) << "for a while";
    }
    owner.emplace(server_->display(), Manner::kObliging, Types{"UTF8_STRING"}, "whole");
    EXPECT_EQ(Text(), "whole");
  }
}

TEST_F(X11Clipboard, ServesEveryTypeAndTheTextUnderItsUsualNames) {
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
  EXPECT_EQ(AllTypes(), (Types{kPlainTextType, types[0], types[1], types[2]}));

  other_->Ask("MULTIPLE", other_->Atoms({"Mac-XMSS", "FIRST", "Mac-XMTB", "SECOND", "UTF8_STRING", "THIRD"}));
  EXPECT_EQ(other_->Take("FIRST"), bytes);
  EXPECT_EQ(other_->Take("THIRD"), bytes);
  EXPECT_EQ(other_->Take("ANSWER"), other_->Atoms({"Mac-XMSS", "FIRST", "Mac-XMTB", "", "UTF8_STRING", "THIRD"}));
}

TEST_F(X11Clipboard, GivesUpOnAReceiverThatReadsNothingAndServesOthersMeanwhile) {
  const std::string bytes(1'000'000, 'x');
  ASSERT_TRUE(Write(bytes, {"XMSS"}));
  for (const bool inTime : {true, false}) {
    XClient(server_->display()).Ask("XMSS");  // and vanishes
    XClient receiver(server_->display());
    receiver.Ask("XMSS");
    AdvanceClock(inTime ? x11::kReceiverPatienceMs - 1 : x11::kReceiverPatienceMs);
    EXPECT_TRUE(XclipPastes("XMSS") == bytes);
    receiver.Take("ANSWER");  // the announcement, which asks for the first piece
    XclipPastes("TARGETS");   // this is answered later
    EXPECT_EQ(receiver.Take("ANSWER").empty(), !inTime);
  }
}

TEST_F(X11Clipboard, IdleCallsReadOnlyWhatHasChanged) {
  const FakeOwner owner(server_->display(), Manner::kObliging, {"UTF8_STRING"}, "theirs");
  Idle(60);
  const int requests = owner.Requests();
  EXPECT_GT(requests, 0);
  Idle(60);
  EXPECT_EQ(owner.Requests(), requests);
  for (int i = 0; i < 100; ++i) {
    const std::string xml = "<Step id=\"" + std::to_string(i) + "\"/>";
    const FakeOwner next(server_->display(), Manner::kObliging, {"Mac-XMSS"}, xml);
    Idle(1);
    ASSERT_EQ(Data("Mac-ScriptStep"), xml) << "the very next call sees a change";
    Idle(1);  // looks at what was written
  }

  UseNewServer("XFIXES");  // reports no changes
  const FakeOwner unreported(server_->display(), Manner::kObliging, {"UTF8_STRING"}, "theirs");
  Idle(60);
  EXPECT_GE(unreported.Requests(), 60);
}

TEST_F(X11Clipboard, IdleCallsWaitForASlowProgramNoLongerThanTheLimit) {
  const std::string text(30, 'x');
  for (const auto manner : {Manner::kEndless, Manner::kTrickles}) {
    const FakeOwner slow(server_->display(), manner, {"UTF8_STRING", "STRING", "Mac-XMSS"}, text);
    const std::int64_t start = g_now;
    Idle(1);
    EXPECT_LE(g_now - start, ReadingLimit::kReadingLimitMs + 200);
    Idle(30);
    EXPECT_LE(g_now - start, ReadingLimit::kReadingLimitMs + 3200) << "asked again too soon";
    EXPECT_EQ(manner == Manner::kTrickles ? Text() : text, text) << "functions wait as long as data comes";
  }
}

TEST_F(X11Clipboard, WithoutAServerThePasteboardIsInsideTheProcess) {
  const std::string xml = "<fmxmlsnippet><Step/></fmxmlsnippet>";
  for (const char* const display : {"", "/no/such/socket"}) {
    ConnectTo(display);
    ASSERT_TRUE(Write("text", {"XMSS", "XMSC"}));
    EXPECT_EQ(AllTypes(), (Types{kPlainTextType, "XMSS", "XMSC"}));
    EXPECT_EQ(Pasteboard::Open()->AvailableType({"Mac-XMSS", "XMSC"}), "XMSC");
    Idle(60);
    ASSERT_TRUE(Write(xml + display, {}));
    Idle(5);
    EXPECT_EQ(Data("Mac-ScriptStep"), xml + display) << "an idle call sees what was written here";
    Idle(60);
  }
  const FakeOwner owner(server_->display(), Manner::kObliging, {"Mac-XMTB"}, "<x/>");
  ConnectTo(server_->display());
  Idle(1);
  EXPECT_EQ(Data("Mac-Table"), "<x/>") << "and what a server has that appears";
}

TEST_F(X11Clipboard, OurContentSurvivesTheServerAndGoesToTheNext) {
  ASSERT_TRUE(Write("ours", {"XMSS"}));
  server_.reset();
  EXPECT_EQ(Data("XMSS"), "ours");
  UseNewServer();
  EXPECT_EQ(Data("XMSS"), "ours");
  EXPECT_EQ(XclipPastes("XMSS"), "ours");
}

TEST_F(X11Clipboard, AForkedProcessLeavesTheServerToItsParent) {
  ASSERT_TRUE(Write("ours", {"XMSS"}));
  const pid_t child = fork();
  if (child == 0) _exit(Text() == "ours" && Write("the child's", {}) ? 0 : 1);
  int status = -1;
  waitpid(child, &status, 0);
  EXPECT_EQ(status, 0);
  EXPECT_EQ(XclipPastes("XMSS"), "ours");
}

TEST_F(X11Clipboard, UnloadingLeavesNeitherCodeNorThreads) {
  other_->Own("CLIPBOARD_MANAGER");
  std::thread([] {}).join();  // a sanitizer starts a thread together with the first one
  const auto threads = EntriesOf("/proc/self/task");
  void* const module = dlopen(UNLOADED_MODULE, RTLD_NOW | RTLD_LOCAL);
  ASSERT_NE(module, nullptr) << dlerror();
  EXPECT_EQ(EntriesOf("/proc/self/task"), threads) << "loading starts nothing";
  reinterpret_cast<void (*)(const char*)>(dlsym(module, "WriteToPasteboard"))("text");
  EXPECT_EQ(EntriesOf("/proc/self/task"), threads + 1);
  EXPECT_EQ(XclipPastes("Mac-XMSS"), "text");
  dlclose(module);
  EXPECT_EQ(EntriesOf("/proc/self/task"), threads);
  EXPECT_EQ(dlopen(UNLOADED_MODULE, RTLD_NOW | RTLD_NOLOAD), nullptr);
  const auto request = other_->NextEvent();
  EXPECT_EQ(reinterpret_cast<const xcb_selection_request_event_t&>(*request).target, other_->Atom("SAVE_TARGETS"))
      << "the clipboard manager was asked to save the content, and did not hold up the end";
}

}  // namespace

void AdvanceClock(std::int64_t milliseconds) { g_now += milliseconds; }
std::int64_t SteadyMilliseconds() { return g_now; }
std::chrono::milliseconds x11::ServerPatience() { return std::chrono::minutes(1); }
