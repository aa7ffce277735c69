#include "tests/endtoend/FastFileMaker.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <thread>
#include <vector>

namespace {

std::vector<char*> Pointers(std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  for (auto& text : texts) pointers.push_back(text.data());
  pointers.push_back(nullptr);
  return pointers;
}

}  // namespace

FastFileMaker::FastFileMaker(const std::string& folder) : output_(folder + "/printed") {
  std::vector<std::string> arguments = {
      FMSIM, "--plugin", PLUGIN_FILE, "--open", SAMPLES "/Workshop.xml", "--idle-interval", "1"};
  // No more than this: neither the clipboard nor the notifications of whoever runs the tests. One arena, because the
  // memory that threads keep in arenas of their own depends on which of them happens to run what.
  std::vector<std::string> environment = {"LD_PRELOAD=" FAST_CLOCK, "HOME=" + folder,   "XDG_CONFIG_HOME=" + folder,
                                          "PATH=" + folder,         "TMPDIR=" + folder, "MALLOC_ARENA_MAX=1"};
  int input[2];
  if (pipe2(input, O_CLOEXEC) != 0) return;
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, input[0], STDIN_FILENO);
  posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, output_.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0600);
  posix_spawn_file_actions_adddup2(&actions, STDOUT_FILENO, STDERR_FILENO);
  EXPECT_EQ(posix_spawn(&child_, FMSIM, &actions, nullptr, Pointers(arguments).data(), Pointers(environment).data()),
            0);
  posix_spawn_file_actions_destroy(&actions);
  close(input[0]);
  input_ = input[1];
}

FastFileMaker::~FastFileMaker() {
  close(input_);
  if (child_ <= 0) return;
  kill(child_, SIGKILL);
  waitpid(child_, nullptr, 0);
}

void FastFileMaker::Type(const std::string& line) {
  const std::string bytes = line + '\n';
  EXPECT_EQ(write(input_, bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
}

Footprint FastFileMaker::Measure() const {
  const std::string process = "/proc/" + std::to_string(child_);
  Footprint footprint;
  std::ifstream status(process + "/status");
  for (std::string word; status >> word;) {
    if (word == "VmRSS:") status >> footprint.residentKb;
    if (word == "Threads:") status >> footprint.threads;
  }
  for (const auto& task : std::filesystem::directory_iterator(process + "/task")) {
    const auto open = std::filesystem::directory_iterator(task.path() / "fd");
    footprint.descriptors = std::max<long>(footprint.descriptors, std::distance(begin(open), end(open)));
  }
  return footprint;
}

std::string FastFileMaker::Printed() const {
  std::ifstream file(output_);
  return {std::istreambuf_iterator<char>(file), {}};
}

int FastFileMaker::End() {
  using namespace std::chrono;
  close(input_);
  input_ = -1;
  int status = 0;
  pid_t ended = 0;
  for (const auto limit = steady_clock::now() + minutes(1); ended == 0 && steady_clock::now() < limit;) {
    ended = waitpid(child_, &status, WNOHANG);
    std::this_thread::sleep_for(milliseconds(5));
  }
  if (ended != child_) return -1;
  child_ = -1;
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}
