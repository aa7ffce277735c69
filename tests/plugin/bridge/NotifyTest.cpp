// How the notification tool of Linux is started.
#include "bridge/Notify.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/wait.h>

#include <csignal>
#include <fstream>
#include <regex>

#include "bridge/Background.h"
#include "bridge/Background_linux.h"
#include "core/FileDescriptor.h"
#include "support/FolderTest.h"

namespace {

bool g_timeIsUp = false;  // whether poll() reports the end of its time limit; otherwise it waits without one
int g_endOfJobs = -1;

}  // namespace

void bg(std::function<void()> job) noexcept { job(); }
int EndOfJobs() { return g_endOfJobs; }

namespace {

class NotifyTest : public FolderTest {
 protected:
  NotifyTest() { setenv("PATH", (folder_ + ":/usr/bin:/bin").c_str(), 1); }
  ~NotifyTest() override { EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1) << "a child process is left"; }

  /// Makes `commands` the tool; what it writes to $report is Report().
  void MakeTool(const std::string& commands) const {
    std::ofstream(folder_ + "/notify-send") << "#!/bin/sh\nreport=" << folder_ << "/report\n" << commands << '\n';
    std::filesystem::permissions(folder_ + "/notify-send", std::filesystem::perms::owner_all);
  }
  std::string Report() const { return Contents(folder_ + "/report"); }
};

TEST_F(NotifyTest, PassesBothTextsSoThatTheToolTakesThemForNothingElse) {
  MakeTool("printf '%s|' \"$@\" > $report");
  const std::string most(24'998, '&');
  const std::pair<std::string, std::string> cases[] = {
      {"--version \"x\" $(x) `x` \\n <b>&amp;</b>\n", "--version \"x\" $(x) `x` \\\\n &lt;b&gt;&amp;amp;&lt;/b&gt;\n"},
      {"a\xFF\xE2\x82z\xED\xA0\x80", "a\uFFFD\uFFFD\uFFFDz\uFFFD\uFFFD\uFFFD"},  // not UTF-8
      // more than the system accepts, cut to whole characters
      {most + "€€", std::regex_replace(most, std::regex("&"), "&amp;")},
  };
  for (const auto& [message, given] : cases) {
    Notify("-h", message);
    EXPECT_EQ(Report(), "--app-name=Varnix|--|-h|" + given + "|");
  }
}

TEST_F(NotifyTest, TheToolInheritsNothingFromTheHost) {
  MakeTool(  // signals below those of the C library
      "files=$(readlink /proc/$$/fd/0 /proc/$$/fd/1 /proc/$$/fd/2 /proc/$$/fd/77)\n"
      "signals=$(sed -n 's/^Sig\\(Blk\\|Ign\\):.*\\(.......\\)$/\\1 \\2/p' /proc/$$/status)\n"
      "echo $files $signals > $report");
  const FileDescriptor inherited(dup2(STDERR_FILENO, 77));
  sigset_t blocked, before;
  sigemptyset(&blocked);
  sigaddset(&blocked, SIGUSR2);
  pthread_sigmask(SIG_BLOCK, &blocked, &before);
  const auto handler = std::signal(SIGUSR1, SIG_IGN);
  Notify("title", "message");
  std::signal(SIGUSR1, handler);
  pthread_sigmask(SIG_SETMASK, &before, nullptr);
  EXPECT_EQ(Report(), "/dev/null /dev/null /dev/null Blk 0000000 Ign 0000000\n");
}

TEST_F(NotifyTest, EndsAToolThatHangsAndIgnoresAMissingOne) {
  MakeTool("exec sleep 1000");
  g_timeIsUp = true;
  Notify("title", "message");
  g_timeIsUp = false;
  const FileDescriptor end(eventfd(1, EFD_CLOEXEC));
  g_endOfJobs = end.get();
  Notify("title", "message");
  g_endOfJobs = -1;
  setenv("PATH", "", 1);
  Notify("title", "there is no tool");
}

}  // namespace

extern "C" {
int __real_poll(pollfd* files, nfds_t count, int timeout);
int __wrap_poll(pollfd* files, nfds_t count, int) { return g_timeIsUp ? 0 : __real_poll(files, count, -1); }
}
