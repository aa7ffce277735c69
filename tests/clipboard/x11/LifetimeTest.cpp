// Servers that are missing, hang, die and come back; programs that fork, end and unload.
#include <dlfcn.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/wait.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <thread>

#include "host/FileDescriptor.h"
#include "tests/clipboard/x11/PasteboardFixture.h"

namespace {

using PasteboardLifetime = PasteboardFixture;

std::ptrdiff_t ThreadCount() { return std::distance(std::filesystem::directory_iterator("/proc/self/task"), {}); }

/// Accepts connections and never says anything.
class SilentServer {
 public:
  SilentServer() : listener_(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    auto* const generic = reinterpret_cast<sockaddr*>(&address);
    socklen_t size = sizeof address;
    const bool listens = bind(listener_.get(), generic, size) == 0 && listen(listener_.get(), 1) == 0 &&
                         getsockname(listener_.get(), generic, &size) == 0;
    constexpr int kFirstPort = 6000;  // that of display 0
    if (listens) display_ = "127.0.0.1:" + std::to_string(ntohs(address.sin_port) - kFirstPort);
  }

  /// "" when it could not be made.
  const std::string& display() const { return display_; }
  /// A program that has connected, if any; disconnects it when destroyed.
  FileDescriptor Accept() const { return FileDescriptor(accept4(listener_.get(), nullptr, nullptr, SOCK_CLOEXEC)); }

 private:
  const FileDescriptor listener_;
  std::string display_;
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
  while (other_->OwnerOf("CLIPBOARD") == XCB_NONE) {
    AdvanceClock(x11::kReconnectPauseMs);
    EXPECT_EQ(Text(), "ours");
  }
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

TEST_F(PasteboardLifetime, AServerThatDiesDuringAWriteTakesNothingWithIt) {
  {
    const auto pasteboard = Pasteboard::Open();
    pasteboard->DeclareTypes(true, {"XMSS"});
    server_->Kill();
    EXPECT_TRUE(pasteboard->SetData("XMSS", "bytes"));
  }
  EXPECT_EQ(Data("XMSS"), "bytes");
}

TEST_F(PasteboardLifetime, TheThreadTakesNoSignalOfTheHosts) {
  ASSERT_TRUE(Write("text", {}));
  int threads = 0;
  for (const auto& task : std::filesystem::directory_iterator("/proc/self/task")) {
    if (task.path().filename() == std::to_string(getpid())) continue;
    std::ifstream status(task.path() / "status");
    std::string word;
    while (status >> word && word != "SigBlk:") continue;
    std::uint64_t blocked = 0;
    status >> std::hex >> blocked;
    for (const int number : {SIGPIPE, SIGINT, SIGTERM, SIGCHLD}) {
      EXPECT_NE(blocked & (std::uint64_t{1} << (number - 1)), 0U) << number;
    }
    ++threads;
  }
  EXPECT_GE(threads, 1);
}

TEST_F(PasteboardLifetime, AServerThatHangsIsGivenUp) {
  EXPECT_EQ(Text(), "");
  server_->Hang();
  EXPECT_EQ(Text(), "");
  ASSERT_TRUE(Write("text", {}));
  EXPECT_EQ(Text(), "text");
}

TEST_F(PasteboardLifetime, AServerThatNeverAnswersHoldsNeitherTheWriteNorTheExit) {
  const SilentServer server;
  ASSERT_NE(server.display(), "");
  setenv("DISPLAY", server.display().c_str(), 1);
  EXPECT_EQ(RunProcess({SHORT_LIVED_PROGRAM, "10"}).status, 0);
  EXPECT_TRUE(server.Accept().IsOpen());  // it did try
}

TEST_F(PasteboardLifetime, AServerThatWasWaitedForInVainIsNotWaitedForAgain) {
  const SilentServer server;
  ASSERT_NE(server.display(), "");
  ConnectTo(server.display());
  ASSERT_TRUE(Write("ours", {}));
  for (auto attempts = kMaxSeconds * 1000 / x11::kServerPatienceMs; attempts > 0;) {  // too many to wait for each
    if (server.Accept().IsOpen()) --attempts;
    AdvanceClock(x11::kReconnectPauseMs);
    EXPECT_EQ(Text(), "ours");
  }
  ConnectTo(server_->display());
  while (other_->OwnerOf("CLIPBOARD") == XCB_NONE) {
    AdvanceClock(x11::kReconnectPauseMs);
    EXPECT_EQ(Text(), "ours");
  }
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

TEST_F(PasteboardLifetime, AForkedProcessEndsWithoutDisturbingIts) {
  ASSERT_TRUE(Write("ours", {}));
  const pid_t child = fork();
  if (child == 0) std::exit(0);
  int status = -1;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  EXPECT_EQ(status, 0);
  EXPECT_EQ(other_->Read("UTF8_STRING")->bytes, "ours");
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
    other_->Notify(request, request.property);
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
