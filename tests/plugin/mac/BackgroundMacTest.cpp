// Background work on macOS, with a thread for each job instead of a queue, and the notifications that use it.
#include <FMWrapper/FMXExtern.h>
#include <dispatch/dispatch.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <gtest/gtest.h>

#include <csignal>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <thread>

#include "bridge/Background.h"
#include "bridge/NotificationScript.h"
#include "bridge/Notify.h"
#include "support/FolderTest.h"

namespace {

std::thread g_job;
std::string g_tool;  // what osascript runs; "" if it cannot be started

TEST(Background, RunsJobsOnAnotherThreadAndDropsTheirExceptions) {
  const auto owned = std::make_shared<std::thread::id>();
  bg([owned] {
    *owned = std::this_thread::get_id();
    throw std::runtime_error("dropped");
  });
  const auto elsewhere = g_job.get_id();
  g_job.join();
  EXPECT_EQ(*owned, elsewhere);
  EXPECT_EQ(owned.use_count(), 1);
}

using UnloadMacTest = FolderTest;

TEST_F(UnloadMacTest, ThePluginStaysInMemoryForJobsThatOutliveIt) {
  void* const plugin = dlopen(MAC_PLUGIN, RTLD_LAZY);
  ASSERT_NE(plugin, nullptr) << dlerror();
  FMX_ExternCallStruct call{};
  call.whichCall = kFMXT_Init;
  reinterpret_cast<void (*)(FMX_ExternCallPtr)>(dlsym(plugin, "FMExternCallProc"))(&call);
  dlclose(plugin);
  EXPECT_NE(dlopen(MAC_PLUGIN, RTLD_LAZY | RTLD_NOLOAD), nullptr);
}

using NotifyMacTest = FolderTest;

TEST_F(NotifyMacTest, WritesTheScriptToTheToolAndSurvivesOneThatEndsEarlyOrIsMissing) {
  const std::string message = '\\' + std::string(1 << 20, 'x');
  for (const std::string& tool : {"cat > " + folder_ + "/script", std::string("exit 1"), std::string()}) {
    g_tool = tool;
    Notify("title", message);
    g_job.join();
  }
  std::ifstream script(folder_ + "/script");
  EXPECT_TRUE(std::string(std::istreambuf_iterator<char>(script), {}) == NotificationScript("title", message));
}

}  // namespace

dispatch_queue_t dispatch_get_global_queue(long, unsigned long) { return nullptr; }
void dispatch_async_f(dispatch_queue_t, void* context, void (*work)(void*)) { g_job = std::thread(work, context); }

extern "C" {

std::FILE* __real_popen(const char* command, const char* mode);
std::FILE* __wrap_popen(const char* command, const char* mode) {
  EXPECT_STREQ(command, "/usr/bin/osascript");
  return g_tool.empty() ? nullptr : __real_popen(g_tool.c_str(), mode);
}

// A setting of the descriptor on macOS; here it applies to the process.
int __wrap_fcntl(int, int command, int argument) {
  if (command == F_SETNOSIGPIPE && argument == 1) signal(SIGPIPE, SIG_IGN);
  return 0;
}

}  // extern "C"
