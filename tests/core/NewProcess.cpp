#include "tests/core/NewProcess.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>

namespace {

constexpr unsigned int kSecondsUntilHung = 60;

[[noreturn]] void RunChild(const std::function<std::string()>& body, int output) {
  alarm(kSecondsUntilHung);
  if (geteuid() == 0 && (setgid(kOrdinaryUser) != 0 || setuid(kOrdinaryUser) != 0)) _exit(1);
  const std::string text = body();
  FILE* stream = fdopen(output, "w");
  fwrite(text.data(), 1, text.size(), stream);
  _exit(fclose(stream) == 0 && !testing::Test::HasFailure() ? 0 : 1);
}

}  // namespace

std::string InNewProcess(const std::function<std::string()>& body) {
  int ends[2];
  if (pipe(ends) != 0) throw std::runtime_error("pipe");
  const pid_t child = fork();
  if (child == 0) RunChild(body, ends[1]);
  close(ends[1]);
  std::string text;
  FILE* stream = fdopen(ends[0], "r");
  for (int c = getc(stream); c != EOF; c = getc(stream)) text += static_cast<char>(c);
  fclose(stream);
  int status = 0;
  waitpid(child, &status, 0);
  EXPECT_EQ(status, 0) << "the process did not end well";
  return text;
}
