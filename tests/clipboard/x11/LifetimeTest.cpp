// Servers that are missing, hang, die and come back; programs that fork, end and unload.
#include <dlfcn.h>

#include <csignal>
#include <filesystem>
#include <semaphore>
#include <thread>

#include "tests/clipboard/x11/PasteboardFixture.h"
#include "tests/support/LoopbackServer.h"

namespace {

struct PasteboardLifetime : PasteboardFixture {
  /// Whatever the server's state, our content is there; in the end the server has it.
  void ExpectOursUntilItIsServed() {
    while (other_->OwnerOf("CLIPBOARD") == XCB_NONE) {
      AdvanceClock(x11::kReconnectPauseMs);
      EXPECT_EQ(Text(), "ours");
    }
  }
};

std::ptrdiff_t ThreadCount() { return std::distance(std::filesystem::directory_iterator("/proc/self/task"), {}); }

/// Accepts connections and says nothing, until the test has it hang up.
struct SilentServer {
  std::counting_semaphore<> tried{0}, hangUps{0};
  LoopbackServer server{[this](auto&) {
    tried.release();
    hangUps.acquire();
  }};
  const std::string display = "127.0.0.1:" + std::to_string(server.port() - 6000);  // the port of display 0
};

TEST_F(PasteboardLifetime, WithoutADisplayThePasteboardIsInsideTheProcess) {
  for (const char* const display : {"", ":", "nowhere.invalid:0", "/no/such/socket"}) {
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

TEST_F(PasteboardLifetime, WhatTheNextServerHasIsNotReplaced) {
  server_->Kill();
  ASSERT_TRUE(Write("ours", {"XMSS"}));
  server_.emplace();
  const FakeOwner owner(server_->display(), Manner::kObliging, {"UTF8_STRING"}, "theirs");
  ConnectTo(server_->display());
  while (Text() == "ours") AdvanceClock(x11::kReconnectPauseMs);
  EXPECT_EQ(Text(), "theirs");
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

TEST_F(PasteboardLifetime, AServerThatHangsIsGivenUp) {
  EXPECT_EQ(Text(), "");
  server_->Hang();
  EXPECT_EQ(Text(), "");
  ASSERT_TRUE(Write("text", {}));
  EXPECT_EQ(Text(), "text");
}

TEST_F(PasteboardLifetime, AServerThatNeverAnswersHoldsNeitherTheWriteNorTheExit) {
  SilentServer server;
  setenv("DISPLAY", server.display.c_str(), 1);
  EXPECT_EQ(RunProcess({SHORT_LIVED_PROGRAM, "10"}).status, 0);
  server.tried.acquire();
  server.hangUps.release();
}

TEST_F(PasteboardLifetime, AServerThatWasWaitedForInVainIsNotWaitedForAgain) {
  SilentServer server;
  ConnectTo(server.display);
  ASSERT_TRUE(Write("ours", {}));
  for (auto attempts = kMaxSeconds * 1000 / x11::kServerPatienceMs; attempts > 0;) {  // too many to wait for each
    if (server.tried.try_acquire()) {
      server.hangUps.release();
      --attempts;
    }
    AdvanceClock(x11::kReconnectPauseMs);
    EXPECT_EQ(Text(), "ours");
  }
  ConnectTo(server_->display());
  ExpectOursUntilItIsServed();
}

TEST_F(PasteboardLifetime, UnloadingLeavesNeitherCodeNorThreads) {
  Write("", {});
  const auto threads = ThreadCount();
  void* const module = dlopen(SHORT_LIVED_MODULE, RTLD_NOW | RTLD_LOCAL);
  ASSERT_NE(module, nullptr) << dlerror();
  EXPECT_EQ(ThreadCount(), threads);
  EXPECT_TRUE(other_->Read("UTF8_STRING").has_value());
  reinterpret_cast<void (*)(const char*)>(dlsym(module, "WriteToPasteboard"))("text");
  EXPECT_EQ(ThreadCount(), threads + 1);
  EXPECT_EQ(other_->Read("XMSS"), std::nullopt);
  EXPECT_EQ(other_->Read("Mac-XMSS")->bytes, "text");
  dlclose(module);
  EXPECT_EQ(ThreadCount(), threads);
  EXPECT_EQ(dlopen(SHORT_LIVED_MODULE, RTLD_NOW | RTLD_NOLOAD), nullptr);
}

TEST_F(PasteboardLifetime, AClipboardManagerSavesTheContentOfAProgramThatEnds) {
  other_->Own("CLIPBOARD_MANAGER");
  ProcessResult ended;
  std::thread program([&] { ended = RunProcess({SHORT_LIVED_PROGRAM, "1000000"}); });
  const auto event = other_->Next(XCB_SELECTION_REQUEST);
  if (event != nullptr) {
    const auto& request = reinterpret_cast<const xcb_selection_request_event_t&>(*event);
    EXPECT_EQ(other_->NameOf(request.target), "SAVE_TARGETS");
    EXPECT_EQ(other_->Take(other_->NameOf(request.property), request.requestor).bytes,
              Words({other_->Atom("UTF8_STRING"), other_->Atom("Mac-XMSS")}));
    XClient manager(server_->display());  // reads by another connection, as the events here are for the request
    EXPECT_TRUE(manager.Read("UTF8_STRING")->bytes == std::string(1'000'000, 'x'));
    EXPECT_TRUE(manager.Read("Mac-XMSS")->bytes == std::string(1'000'000, 'x'));
    other_->Answer(request, other_->Atom("NULL"), 32, "");
  }
  program.join();
  EXPECT_NE(event, nullptr);
  EXPECT_EQ(ended.status, 0);
}

TEST_F(PasteboardLifetime, AClipboardManagerThatHangsDoesNotHoldTheExit) {
  other_->Own("CLIPBOARD_MANAGER");
  EXPECT_EQ(RunProcess({SHORT_LIVED_PROGRAM, "10"}).status, 0);
  EXPECT_NE(other_->Next(XCB_SELECTION_REQUEST), nullptr);
}

}  // namespace
