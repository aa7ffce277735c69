// fmsim on a terminal: the prompt, idle messages while somebody types, and requests to stop.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <system_error>

#include "tests/fmsim/FmsimTest.h"

namespace {

constexpr int kPatienceMs = 60000;
constexpr char kEndless[] = "SetRecursion ( While ( i = 0 ; 1 ; i = 0 ; i ) ; 1e9 )";

// fmsim on a terminal of its own, with `folder` as home and for temporary files.
class Terminal {
 public:
  Terminal(const std::string& folder, const std::string& options) {
    const std::string command = "HOME=$1 TMPDIR=$1 TERM=xterm exec " FMSIM " " + options;
    winsize size{24, 80, 0, 0};
    child_ = forkpty(&terminal_, nullptr, nullptr, &size);
    if (child_ == 0) _exit(execl("/bin/sh", "sh", "-c", command.c_str(), "sh", folder.c_str(), nullptr));
    if (child_ < 0) throw std::system_error(errno, std::generic_category(), "no terminal to be had");
    fcntl(terminal_, F_SETFL, O_NONBLOCK);
  }
  ~Terminal() {
    close(terminal_);
    if (child_ <= 0) return;
    kill(child_, SIGKILL);
    waitpid(child_, nullptr, 0);
  }
  Terminal(const Terminal&) = delete;
  Terminal& operator=(const Terminal&) = delete;

  void Type(std::string_view keys) {
    while (!keys.empty() && Pump(POLLIN | POLLOUT)) {
      const ssize_t taken = write(terminal_, keys.data(), keys.size());
      if (taken > 0) keys.remove_prefix(static_cast<std::size_t>(taken));
    }
  }

  // Waits until `text` stands behind what was waited for before.
  void Expect(const std::string& text) {
    std::size_t found = 0;
    while ((found = shown_.find(text, position_)) == shown_.npos) {
      if (Pump(POLLIN)) continue;
      ADD_FAILURE() << text << " is missing in " << shown_;
      return;
    }
    position_ = found + text.size();
  }

  void Send(int signal) { kill(child_, signal); }

  // Waits for the end. Exit status, or 128 and the signal.
  int Wait() {
    while (Pump(POLLIN)) continue;
    int status = 0;
    waitpid(std::exchange(child_, 0), &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  }

 private:
  // Takes in what is shown. False at the end, also of patience.
  bool Pump(short events) {
    pollfd state{terminal_, events, 0};
    if (poll(&state, 1, kPatienceMs) <= 0) return Send(SIGKILL), false;
    char bytes[4096];
    const ssize_t count = read(terminal_, bytes, sizeof bytes);
    if (count > 0) shown_.append(bytes, static_cast<std::size_t>(count));
    return count > 0 || (count < 0 && errno == EAGAIN);
  }

  int terminal_ = -1;
  pid_t child_ = 0;
  std::string shown_;
  std::size_t position_ = 0;
};

using Prompt = Fmsim;

TEST_F(Prompt, EditsAndKeepsLinesOfAnyLengthAndCompletesNames) {
  Terminal terminal(folder_, "");
  terminal.Expect("fmsim> ");
  terminal.Type("Length ( \"" + std::string(8000, 'x') + "\" )\r");
  terminal.Expect("8000\r\n");
  terminal.Type("\x1b[A\x01 1 + \r");  // up, home
  terminal.Expect("8001\r\n");
  terminal.Type("Upper ( \"größ\" )\r");
  terminal.Expect("GRÖSS\r\n");
  terminal.Type("patternC\t ( \"aaa\" ; \"a\" ) * 111\r");
  terminal.Expect("333\r\n");
}

TEST_F(Prompt, SendsIdleMessagesAtTheIntervalWhileALineIsTyped) {
  const std::string small = Write({.steps = Step(6, "Go to Layout")});
  Terminal terminal(folder_, "--open " + small + " --plugin " CARELESS_PLUGIN " --idle-interval 20");
  terminal.Expect("fmsim> ");
  terminal.Type("Careless.StartScript ( \"Small\" ; \"Go\" )\r20 + ");
  terminal.Expect("is not simulated; skipped\r\n");
  terminal.Type("3\r");
  terminal.Expect("23\r\nfmsim> ");
}

TEST_F(Prompt, EndsOnlyWhatIsGoingOnWithCtrlC) {
  Terminal terminal(folder_, "");
  terminal.Expect("fmsim> ");
  terminal.Type("20 + ");
  terminal.Expect("20 + ");
  terminal.Type("\x03");
  terminal.Expect("^C\r\nfmsim> ");
  for (const std::string line : {kEndless, ".idle 86400"}) {
    terminal.Type(line + "\r");
    terminal.Expect("\n");
    terminal.Type("\x03");
    if (line == kEndless) terminal.Expect("error 1: cancelled\r\n");
    terminal.Expect("fmsim> ");
  }
  terminal.Type("\x04");
  EXPECT_EQ(terminal.Wait(), 0);
}

TEST_F(Prompt, EndsInOrderWhenAskedTo) {
  for (const int signal : {SIGTERM, SIGHUP}) {
    Terminal terminal(folder_, "--plugin " CARELESS_PLUGIN);
    terminal.Expect("fmsim> ");
    terminal.Type("Get ( TemporaryPath )\r");
    terminal.Expect(folder_);
    terminal.Send(signal);
    terminal.Expect("left \"Careless.Leak\" registered");
    EXPECT_EQ(terminal.Wait(), 128 + signal);
    EXPECT_TRUE(std::filesystem::is_empty(folder_));
  }
}

}  // namespace
