// The end of the plug-in while the service and the desktop hang: unloading it waits for nobody.
#include <FMWrapper/FMXExtern.h>
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <thread>

#include "tests/support/FolderTest.h"
#include "tests/support/LoopbackServer.h"
#include "tests/support/ScriptedHost.h"

namespace {

/// Far above what it takes and far below the two minutes that a transfer may.
constexpr std::chrono::seconds kBound{20};

using Unload = FolderTest;

TEST_F(Unload, LeavesWhileRequestsAndNotificationsHang) {
  LoopbackServer server(NeverAnswer);
  setenv("XDG_CONFIG_HOME", folder_.c_str(), 1);
  unsetenv("DISPLAY");  // the clipboard of whoever runs the tests is not ours
  setenv("PATH", (folder_ + ":" + getenv("PATH")).c_str(), 1);
  std::ofstream(folder_ + "/notify-send") << "#!/bin/sh\ntouch '" << folder_ << "/notified'\nexec sleep 60\n";
  std::filesystem::permissions(folder_ + "/notify-send", std::filesystem::perms::owner_all);
  std::filesystem::create_directories(folder_ + "/varnix");
  std::ofstream(folder_ + "/varnix/preferences")
      << "com.varnix.plugin.licenseKey=K1\ncom.varnix.plugin.baseUrl=" << server.Url() << "\n";
  std::ofstream(folder_ + "/saved.xml") << "<x/>";

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
  for (const char* name : {"/missing.xml", "/saved.xml"}) {
    EXPECT_EQ(CallHandler(fmhost::FindFunction(u"Varnix.LivePush")->function, {folder_ + name}), "OK");
  }
  const auto isAsked = [&](const char* line) {
    return std::ranges::any_of(server.Requests(), [&](const auto& request) { return request.starts_with(line); });
  };
  while (!isAsked("GET /api/bridge/command/next") || !isAsked("POST /api/live/ingest")) std::this_thread::yield();
  while (!std::filesystem::exists(folder_ + "/notified")) std::this_thread::yield();
  send(kFMXT_Shutdown);
  const auto start = std::chrono::steady_clock::now();
  dlclose(library);
  EXPECT_LT(std::chrono::steady_clock::now() - start, kBound);
  EXPECT_FALSE(std::filesystem::exists(folder_ + "/saved.xml")) << "an upload cut short still takes its file with it";
  EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1) << "the notification's tool is left";
}

}  // namespace
