// A signed-in bridge with all that surrounds it in the test's hand: clock, background, pasteboard, host and service.
#pragma once

#include <deque>
#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "net/Transfer.h"
#include "support/FakePasteboard.h"
#include "support/FolderTest.h"
#include "support/ScriptedHost.h"

using Texts = std::vector<std::string>;

class BridgeTest : public FolderTest {
 public:
  BridgeTest();

  /// The one that the seams serve.
  static inline BridgeTest* current;

  std::int64_t now = 1'000'000;             ///< the clock
  std::function<void()> onClock;            ///< called when it is read
  std::vector<std::function<void()>> jobs;  ///< what waits in the background
  Texts notifications;                      ///< "title: message"

  /// All requests so far.
  std::vector<Network::Request> requests;
  /// The commands that the service has, which it hands out in order.
  std::deque<std::string> commands;
  /// What it answers, by the beginning of the path; to all other requests an empty 200.
  std::map<std::string, Network::Outcome> answers;

  /// What the host answers to the starts of scripts, 0 when there is nothing here.
  std::deque<short> startErrors;
  /// What it was asked: "file|script|control|parameter", "-" for none.
  Texts starts;
  /// How many evaluations still work before one fails, negative for all.
  int evaluationsBeforeError = -1;
  /// Called within the next evaluation, and the next start of a script.
  std::function<void()> duringEvaluation, duringStart;

  FakePasteboard pasteboard;
  struct Host : ScriptedHost {
    short Evaluate(std::uint64_t file, std::u16string_view expression, calc::Value& result) override;
  } host;

  /// One idle message.
  void Idle(int level = 0);
  /// Runs the jobs that wait, in order, and those that they start, while another account is signed in.
  void RunJobs();
  /// An idle call that polls, after the time that takes, and the poll, which brings `command`.
  void Poll(const std::string& command);
  /// The same and the idle call that carries the command out, with what it has to send.
  void CarryOut(const std::string& command);

  /// The requests since the last call but polls: "POST http://s/api/bridge/push {...}".
  Texts Sent();
  /// What Sent() has for these.
  static std::string Pushed(const std::string& type, const std::string& content, const std::string& label);
  static std::string Told(const std::string& code, const std::string& status, const std::string& message);
  static std::string Ended(const std::string& id, const std::string& error = "");
};
