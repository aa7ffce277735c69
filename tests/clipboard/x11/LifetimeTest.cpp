// Servers that are missing, hang, die and are followed by others; programs that end and unload.
#include <dlfcn.h>

#include <filesystem>

#include "tests/clipboard/x11/PasteboardFixture.h"

namespace {

using PasteboardLifetime = PasteboardFixture;

std::ptrdiff_t ThreadCount() { return std::distance(std::filesystem::directory_iterator("/proc/self/task"), {}); }

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
  while (other_->OwnerOf("CLIPBOARD") == XCB_NONE) {
    AdvanceClock(x11::kReconnectPauseMs);
    EXPECT_EQ(Text(), "ours");
  }
  EXPECT_EQ(XclipPastes("XMSS"), "ours");
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
  const auto threads = ThreadCount();
  void* const module = dlopen(SHORT_LIVED_MODULE, RTLD_NOW | RTLD_LOCAL);
  ASSERT_NE(module, nullptr) << dlerror();
  EXPECT_EQ(ThreadCount(), threads);
  reinterpret_cast<void (*)(const char*)>(dlsym(module, "WriteToPasteboard"))("text");
  EXPECT_EQ(ThreadCount(), threads + 1);
  EXPECT_EQ(XclipPastes("Mac-XMSS"), "text");
  dlclose(module);
  EXPECT_EQ(ThreadCount(), threads);
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
