// Servers that are missing, hang, die and are followed by others; programs that end and unload.
#include <dlfcn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <csignal>
#include <thread>

#include "plugin/clipboard/x11/PasteboardFixture.h"
#include "support/Entries.h"
#include "support/LoopbackServer.h"

namespace {

struct PasteboardLifetime : PasteboardFixture {
  void ExpectOursUntilItIsServed() {
    while (other_->OwnerOf("CLIPBOARD") == XCB_NONE) {
      AdvanceClock(x11::kReconnectPauseMs);
      EXPECT_EQ(Text(), "ours");
    }
  }
};

TEST_F(PasteboardLifetime, WithoutADisplayThePasteboardIsInsideTheProcess) {
  for (const char* const display : {"", "/no/such/socket"}) {
    ConnectTo(display);
    ASSERT_TRUE(Write("text", {"XMSS", "XMSC"}));
    EXPECT_EQ(AllTypes(), (Types{kPlainTextType, "XMSS", "XMSC"}));
    EXPECT_EQ(Pasteboard::Open()->AvailableType({"Mac-XMSS", "XMSC"}), "XMSC");
    ASSERT_TRUE(Write("other", {}));
    EXPECT_EQ(AllTypes(), Types{kPlainTextType});
    EXPECT_EQ(Text(), "other");
  }
  EXPECT_EQ(XclipPastes("UTF8_STRING"), "");
}

TEST_F(PasteboardLifetime, OurContentSurvivesTheServerAndGoesToTheNext) {
  ASSERT_TRUE(Write("ours", {"XMSS"}));
  server_->Kill();
  EXPECT_EQ(Data("XMSS"), "ours");
  server_.emplace();
  other_.emplace(server_->display());
  ConnectTo(server_->display());
  ExpectOursUntilItIsServed();
  EXPECT_EQ(XclipPastes("XMSS"), "ours");
}

TEST_F(PasteboardLifetime, AForkedProcessLeavesTheServerToItsParent) {
  ASSERT_TRUE(Write("ours", {"XMSS"}));
  const pid_t child = fork();
  if (child == 0) _exit(Text() == "ours" && Write("the child's", {}) ? 0 : 1);
  int status = -1;
  waitpid(child, &status, 0);
  EXPECT_EQ(status, 0);
  EXPECT_EQ(XclipPastes("XMSS"), "ours");
}

TEST_F(PasteboardLifetime, TheThreadTakesNoSignalOfTheHosts) {
  ASSERT_TRUE(Write("text", {}));
  sigset_t ours;
  sigemptyset(&ours);
  for (const int number : {SIGPIPE, SIGINT, SIGTERM, SIGUSR1}) sigaddset(&ours, number);
  pthread_sigmask(SIG_BLOCK, &ours, nullptr);
  for (const int number : {SIGPIPE, SIGINT, SIGTERM, SIGUSR1}) {
    kill(getpid(), number);  // ends the process when the thread takes it
    EXPECT_EQ(sigwaitinfo(&ours, nullptr), number);
  }
}

TEST_F(PasteboardLifetime, AServerThatNeverAnswersIsWaitedForOnce) {
  std::atomic<int> tried = 0;
  std::optional<LoopbackServer> silent;
  silent.emplace([&](LoopbackServer::Connection& connection) {
    ++tried;
    connection.WaitForEnd();
  });
  ConnectTo("127.0.0.1:" + std::to_string(silent->port() - 6000));  // the port of display 0
  ASSERT_TRUE(Write("ours", {}));
  for (int attempt = 0; attempt < 20; ++attempt) {
    AdvanceClock(x11::kReconnectPauseMs);
    EXPECT_EQ(Text(), "ours");
  }
  EXPECT_EQ(tried, 1);
  silent.reset();
  ConnectTo(server_->display());
  ExpectOursUntilItIsServed();
}

TEST_F(PasteboardLifetime, AServerThatHangsIsGivenUpAndHoldsNoExit) {
  EXPECT_EQ(Text(), "");
  server_->Hang();
  EXPECT_EQ(Text(), "");
  ASSERT_TRUE(Write("text", {}));
  EXPECT_EQ(Text(), "text");
  EXPECT_EQ(RunProcess({SHORT_LIVED_PROGRAM}).status, 0);
}

TEST_F(PasteboardLifetime, UnloadingLeavesNeitherCodeNorThreads) {
  std::thread([] {}).join();  // with the first thread comes one of a sanitizer's
  const auto threads = EntriesOf("/proc/self/task");
  void* const module = dlopen(SHORT_LIVED_MODULE, RTLD_NOW | RTLD_LOCAL);
  ASSERT_NE(module, nullptr) << dlerror();
  EXPECT_EQ(EntriesOf("/proc/self/task"), threads);
  reinterpret_cast<void (*)(const char*)>(dlsym(module, "WriteToPasteboard"))("text");
  EXPECT_EQ(EntriesOf("/proc/self/task"), threads + 1);
  EXPECT_EQ(XclipPastes("Mac-XMSS"), "text");
  dlclose(module);
  EXPECT_EQ(EntriesOf("/proc/self/task"), threads);
  EXPECT_EQ(dlopen(SHORT_LIVED_MODULE, RTLD_NOW | RTLD_NOLOAD), nullptr);
}

TEST_F(PasteboardLifetime, AClipboardManagerIsAskedToSaveAndDoesNotHoldTheExit) {
  other_->Own("CLIPBOARD_MANAGER");
  EXPECT_EQ(RunProcess({SHORT_LIVED_PROGRAM}).status, 0);
  const auto event = other_->NextOfAny(kPatienceMs);
  ASSERT_NE(event, nullptr);
  EXPECT_EQ(reinterpret_cast<const xcb_selection_request_event_t&>(*event).target, other_->Atom("SAVE_TARGETS"));
}

}  // namespace
