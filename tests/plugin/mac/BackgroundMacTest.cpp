// Notifications on macOS, and its queues, with a thread for each job.
#include <dispatch/dispatch.h>
#include <fcntl.h>

#include <csignal>
#include <cstdio>
#include <future>

#include "bridge/NotificationScript.h"
#include "bridge/Notify.h"
#include "support/FolderTest.h"

namespace {

std::future<void> g_job;
std::string g_tool;  // what osascript runs; "" if it cannot be started

using NotifyMacTest = FolderTest;

TEST_F(NotifyMacTest, WritesTheScriptToTheToolAndSurvivesOneThatEndsEarlyOrIsMissing) {
  const std::string message = '\\' + std::string(1 << 20, 'x');
  for (const std::string& tool : {"cat > " + folder_ + "/script", std::string("exit 1"), std::string()}) {
    g_tool = tool;
    Notify("title", message);
    g_job.wait();
  }
  EXPECT_TRUE(Contents(folder_ + "/script") == NotificationScript("title", message));
}

}  // namespace

dispatch_queue_t dispatch_get_global_queue(long, unsigned long) { return nullptr; }
void dispatch_async_f(dispatch_queue_t, void* context, void (*work)(void*)) {
  g_job = std::async(std::launch::async, [=]() noexcept { work(context); });
}

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
