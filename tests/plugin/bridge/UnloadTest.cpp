// The end of the plug-in while the service and the desktop hang: unloading it, and the end of the host, wait for
// nobody.
#include <FMWrapper/FMXExtern.h>
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <thread>

#include "support/FolderTest.h"
#include "support/LoopbackServer.h"
#include "support/Process.h"
#include "support/ScriptedHost.h"

namespace {

/// Far above what it takes and far below the two minutes that a transfer may.
constexpr std::chrono::seconds kBound{20};

class Unload : public FolderTest {
 protected:
  Unload() {
    std::filesystem::create_directories(folder_ + "/varnix");
    std::ofstream(folder_ + "/varnix/com.varnix.plugin.licenseKey") << "K1";
    std::ofstream(folder_ + "/varnix/com.varnix.plugin.baseUrl") << server.Url();
  }
  ~Unload() override { EXPECT_LT(std::chrono::steady_clock::now() - start, kBound); }

  LoopbackServer server{NeverAnswer};
  std::chrono::steady_clock::time_point start = std::chrono::steady_clock::now();
};

TEST_F(Unload, LeavesWhileRequestsAndNotificationsHang) {
  setenv("PATH", (folder_ + ":" + getenv("PATH")).c_str(), 1);
  std::ofstream(folder_ + "/notify-send") << "#!/bin/sh\ntouch '" << folder_ << "/notified'\nexec sleep 60\n";
  std::filesystem::permissions(folder_ + "/notify-send", std::filesystem::perms::owner_all);
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
  const auto push = [&](const std::string& name) {
    EXPECT_EQ(CallHandler(fmhost::FindFunction(u"Varnix.LivePush")->function, {folder_ + name}), "OK");
  };
  push("/missing.xml");
  std::filesystem::create_directory(folder_ + "/saved");
  for (char number = '1'; number <= '8'; ++number) {
    std::ofstream(folder_ + "/saved/" + number) << "<x/>";
    push(std::string("/saved/") + number);
  }
  EXPECT_EQ(server.WaitForRequests(9).size(), 9u) << "the poll and the uploads, side by side";
  while (!std::filesystem::exists(folder_ + "/notified")) std::this_thread::yield();
  send(kFMXT_Shutdown);
  start = std::chrono::steady_clock::now();
  dlclose(library);
  EXPECT_TRUE(std::filesystem::is_empty(folder_ + "/saved")) << "an upload cut short still takes its file with it";
  EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1) << "the notification's tool is left";
}

TEST_F(Unload, TheHostEndsWhileAPollHangs) {
  for (const char* input : {".idle 0.3\n", ".idle 0.3\n.quit\n"}) {
    const auto result = RunProcess({FMSIM, "--plugin", PLUGIN_FILE}, input);
    EXPECT_EQ(result.status, 0) << result.errors;
    EXPECT_EQ(result.errors, "");
  }
  EXPECT_EQ(server.Requests().size(), 2u);
}

}  // namespace
