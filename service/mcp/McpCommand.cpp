// varnix-service mcp.
#include <pthread.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <iostream>
#include <thread>

#include "Subcommands.h"
#include "mcp/Limits.h"
#include "mcp/Lines.h"
#include "mcp/Session.h"

namespace service {
namespace {

using mcp::LineReader;

// Ends the process on a signal, after the requests in progress.
void EndOnSignal(mcp::Session& session, mcp::LineWriter& output) {
  sigset_t signals;
  sigemptyset(&signals);
  sigaddset(&signals, SIGINT);
  sigaddset(&signals, SIGTERM);
  pthread_sigmask(SIG_BLOCK, &signals, nullptr);  // before other threads start, which inherit it
  std::thread([signals, &session, &output] {
    int signal = 0;
    sigwait(&signals, &signal);
    session.End();
    output.Close();
    std::_Exit(kDone);
  }).detach();
}

}  // namespace

ExitStatus RunMcp(const Options& options) {
  std::signal(SIGPIPE, SIG_IGN);  // a failed write shows that the client is gone
  mcp::LineWriter output(STDOUT_FILENO);
  mcp::Session session(options, [&output](const std::string& line) { output.Write(line); });
  EndOnSignal(session, output);
  LineReader input(STDIN_FILENO, mcp::kLongestRequest);
  std::string_view line;
  for (auto outcome = input.Next(line); outcome != LineReader::Outcome::kEnd && !output.IsClosed();
       outcome = input.Next(line)) {
    if (outcome == LineReader::Outcome::kTooLong) {
      session.Refuse({mcp::kParseError, "the message is longer than 64 MB"});
    } else if (line.find_first_not_of(" \t\r") != std::string_view::npos) {
      session.Take(line);
    }
  }
  // Requests that wait for FileMaker give up and withdraw their commands. A stuck thread must not keep the process.
  if (!session.End()) output.Close();
  if (output.IsClosed()) std::_Exit(kDone);
  return kDone;
}

}  // namespace service
