// The end of the plug-in while the service hangs: unloading it, and the end of the host, wait for nobody.
#include <FMWrapper/FMXExtern.h>
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <thread>

#include "tests/support/FolderTest.h"
#include "tests/support/LoopbackServer.h"
#include "tests/support/Process.h"
#include "tests/support/ScriptedHost.h"

namespace {

using Clock = std::chrono::steady_clock;

/// Far above what it takes and far below the two minutes that a transfer may.
constexpr std::chrono::seconds kBound{20};

class Unload : public FolderTest {
 protected:
  Unload() {
    setenv("XDG_CONFIG_HOME", folder_.c_str(), 1);
    unsetenv("DISPLAY");                                 // the clipboard of whoever runs the tests is not ours
    setenv("PATH", (folder_ + ":" + path_).c_str(), 1);  // a desktop that does not answer
    std::ofstream(folder_ + "/notify-send") << "#!/bin/sh\ntouch '" << folder_ << "/notified'\nexec sleep 60\n";
    std::filesystem::permissions(folder_ + "/notify-send", std::filesystem::perms::owner_all);
    std::filesystem::create_directories(folder_ + "/varnix");
    std::ofstream(folder_ + "/varnix/preferences")
        << "com.varnix.plugin.licenseKey=K1\ncom.varnix.plugin.baseUrl=" << server_.Url() << "\n";
  }

  ~Unload() override { setenv("PATH", path_.c_str(), 1); }

  void ExpectSwift(const std::function<void()>& ending) {
    const auto start = Clock::now();
    ending();
    const auto time = Clock::now() - start;
    EXPECT_LT(time, kBound);
    RecordProperty("microseconds", static_cast<int>(time / std::chrono::microseconds(1)));
  }

  const std::string path_ = getenv("PATH");
  LoopbackServer server_{NeverAnswer};
};

TEST_F(Unload, TheBinaryLeavesWhileItsRequestsAndNotificationsHang) {
  void* library = dlopen(PLUGIN_FILE, RTLD_NOW | RTLD_LOCAL);
  ASSERT_NE(library, nullptr) << dlerror();
  const auto send = [&](FMX_ExternCallSwitch message) {
    static FMX_ExternCallStruct call{};
    call.extnVersion = 71;
    call.whichCall = message;
    call.cCurrentEnv = [](FMX_ExprEnv*) -> FMX_ErrorCode { return 0; };
    reinterpret_cast<FMX_ExternCallProc>(dlsym(library, "FMExternCallProc"))(&call);
  };
  ScriptedHost host;
  send(kFMXT_Init);
  send(kFMXT_Idle);
  const auto push = [&](const char* name) {
    EXPECT_EQ(CallHandler(fmhost::FindFunction(u"Varnix.LivePush")->function, {folder_ + name}), "OK");
  };
  push("/missing.xml");
  for (const char* name : {"/1.xml", "/2.xml"}) {
    std::ofstream(folder_ + name) << "<x/>";
    push(name);
  }
  EXPECT_EQ(server_.WaitForRequests(3).size(), 3u);
  while (!std::filesystem::exists(folder_ + "/notified")) std::this_thread::yield();
  send(kFMXT_Shutdown);
  ExpectSwift([&] { dlclose(library); });
  EXPECT_FALSE(std::filesystem::exists(folder_ + "/1.xml")) << "an upload cut short still takes its file with it";
  EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1) << "the notification's tool is left";
}

TEST_F(Unload, TheHostEndsWhileAPollHangs) {
  for (const char* input : {"", ".quit\n"}) {
    ExpectSwift([&] {
      const auto result = RunProcess({FMSIM, "--plugin", PLUGIN_FILE}, std::string(".idle 0.3\n") + input);
      EXPECT_EQ(result.status, 0) << result.errors;
      EXPECT_EQ(result.errors, "");
    });
    ASSERT_FALSE(server_.Requests().empty());
    EXPECT_EQ(RequestLine(server_.Requests().back()), "GET /api/bridge/command/next?licenseKey=K1&version=1.6.16");
  }
  EXPECT_EQ(server_.Requests().size(), 2u);
}

}  // namespace
