// Runs a piece of a test as the program of an ordinary user would: in a process of its own.
#pragma once

#include <functional>
#include <string>

/// The account that stands in for a user when the tests run as root, whom file permissions do not stop.
inline constexpr unsigned int kOrdinaryUser = 65534;

/// What `body` returns, run in a new process that has given up root's rights and ends after a minute at the latest. The
/// test fails when that process does.
std::string InNewProcess(const std::function<std::string()>& body);
