// Runs part of a test in a separate process, as an ordinary user.
#pragma once

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

/// The account to use when the tests run as root, whom file permissions do not stop.
inline constexpr unsigned int kOrdinaryUser = 65534;

/// Runs `body` in a new process that has given up root's rights and ends after a minute at the latest.
template <typename Body>
void InNewProcess(Body body) {
  const pid_t child = fork();
  if (child == 0) {
    alarm(60);
    if (geteuid() == 0 && (setgid(kOrdinaryUser) != 0 || setuid(kOrdinaryUser) != 0)) _exit(1);
    body();
    _exit(testing::Test::HasFailure() ? 1 : 0);
  }
  int status = -1;
  waitpid(child, &status, 0);
  EXPECT_EQ(status, 0) << "the process failed";
}
