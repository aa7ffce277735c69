// fmsim as a person or a script uses it: options in order, results, messages, exit status.
#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "sim/application/SmallExport.h"
#include "support/Process.h"

namespace {

const std::string kTimesheets = SAMPLES "/Timesheets.xml";

class Fmsim : public SmallExports {};

TEST_F(Fmsim, PrintsWhatTheTranscriptsShow) {
  const std::string failing = Write({.steps = "Set Variable $x | 1 / 0\nExit Script $x"});
  std::istringstream lines(Filled(Contents(TRANSCRIPTS) + '\n', {{"{failing}", failing},
                                                                 {"{design}",
                                                                  "--plugin | {plugin} | --open | "
                                                                  "{samples}/Timesheets.xml | --open | "
                                                                  "{samples}/Workshop.xml"},
                                                                 {"{samples}", SAMPLES},
                                                                 {"{plugin}", PLUGIN_FILE},
                                                                 {"{careless}", CARELESS_PLUGIN}}));
  std::vector<std::string> arguments;
  std::string input, output, errors;
  int run = 0;
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with("$ ")) {
      arguments = {FMSIM};
      std::istringstream words(Replaced(line.substr(2), " | ", "\n"));
      for (std::string word; std::getline(words, word);) arguments.push_back(word);
    } else if (line.starts_with("<")) {
      input += line.substr(std::min<std::size_t>(2, line.size())) + '\n';
    } else if (line.starts_with("! ")) {
      errors += line.substr(2) + '\n';
    } else if (line.starts_with("    ")) {
      output += (line == "    (empty)" ? "" : line.substr(4)) + '\n';
    } else if (!arguments.empty() && line.empty()) {
      const auto result = RunProcess(arguments, std::exchange(input, {}));
      EXPECT_EQ(result.status, errors.empty() ? 0 : 1) << testing::PrintToString(arguments);
      EXPECT_EQ(result.output, std::exchange(output, {})) << testing::PrintToString(arguments);
      EXPECT_EQ(result.errors, std::exchange(errors, {})) << testing::PrintToString(std::exchange(arguments, {}));
      ++run;
    }
  }
  EXPECT_EQ(run, 16);
}

// Starts fmsim on a new terminal and sets `terminal` to its other end.
pid_t StartOnTerminal(int& terminal) {
  terminal = posix_openpt(O_RDWR | O_NOCTTY);
  if (grantpt(terminal) != 0 || unlockpt(terminal) != 0) return -1;
  const std::string name = ptsname(terminal);
  const pid_t child = fork();
  if (child == 0) {
    setsid();
    const int own = open(name.c_str(), O_RDWR);
    ioctl(own, TIOCSCTTY, 0);
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) dup2(own, stream);
    close(own);
    close(terminal);
    execl(FMSIM, FMSIM, "--open", kTimesheets.c_str(), static_cast<char*>(nullptr));
    _exit(127);
  }
  return child;
}

// What the terminal shows after `keys` have been typed, each at a new prompt.
std::string Type(const std::vector<std::string>& keys) {
  int terminal = -1;
  const pid_t child = StartOnTerminal(terminal);
  std::string shown;
  std::size_t seen = 0;
  auto key = keys.begin();
  char bytes[4096];
  for (ssize_t count = 0; (count = read(terminal, bytes, sizeof bytes)) > 0;) {
    shown.append(bytes, static_cast<std::size_t>(count));
    const auto prompt = shown.find("> ", seen);
    if (prompt == shown.npos || key == keys.end()) continue;
    seen = prompt + 2;
    if (write(terminal, key->data(), key->size()) < 0) break;
    ++key;
  }
  close(terminal);
  int status = -1;
  waitpid(child, &status, 0);
  EXPECT_EQ(status, 0) << shown;
  return shown;
}

TEST_F(Fmsim, CompletesContinuesAndRemembersLinesOnATerminal) {
  setenv("XDG_STATE_HOME", folder_.c_str(), 1);
  const std::string shown =
      Type({".activate tim\t\r", "Max ( 3 ;\r", "2 )\r", ".run hours\t\r", "\"varnix.register\"\r", ".quit\r"});
  EXPECT_NE(shown.find("  ...> "), shown.npos) << shown;
  EXPECT_NE(shown.find("\n3\r\n"), shown.npos) << shown;
  EXPECT_EQ(shown.find("no script"), shown.npos) << shown;
  const std::string history = folder_ + "/varnix/fmsim_history";
  const std::string kept = Contents(history);
  EXPECT_NE(kept.find("Timesheets"), kept.npos) << kept;
  EXPECT_EQ(kept.find("register"), kept.npos) << "a line of a sign-in holds a key";
  EXPECT_EQ(std::filesystem::status(history).permissions(), std::filesystem::perms(0600));
}

TEST_F(Fmsim, StopsAtASignalAndStillUnloadsItsPlugins) {
  for (const std::string work : {"--eval \"SetRecursion ( While ( i = 0 ; 1 ; i = 0 ; i ) ; 1e9 )\"", "--idle 86400"}) {
    const std::string program = "echo $$; exec " FMSIM " --plugin " CARELESS_PLUGIN " --eval 1 " + work;
    const auto result = RunProcess({"/bin/sh", "-c",
                                    "{ sh -c '" + program +
                                        "'; echo $?; } 2>&1 | "
                                        "{ read process; read started; kill -TERM $process; cat; }"});
    EXPECT_TRUE(result.output.ends_with("Careless.fmx: left \"Careless.Leak\" registered\n143\n")) << result.output;
  }
}

}  // namespace
