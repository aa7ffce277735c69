// A signed-in bridge with all that surrounds it in the test's hand: clock, background, pasteboard, host and service.
#pragma once

#include <FMWrapper/FMXExtern.h>

#include <deque>
#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/FakePasteboard.h"
#include "tests/support/FolderTest.h"
#include "tests/support/LoopbackServer.h"
#include "tests/support/ScriptedHost.h"

using Texts = std::vector<std::string>;

class BridgeTest : public FolderTest {
 public:
  /// The clock.
  static std::int64_t now;
  /// Called when the clock is read.
  static std::function<void()> onClock;
  /// "title: message" of each notification.
  static Texts notifications;

 protected:
  BridgeTest();
  ~BridgeTest() override;

  /// One idle message.
  void Idle(int level = kFMXT_UserIdle);
  /// Runs the jobs that wait, in order, and those that they start.
  static void RunJobs();
  static std::size_t JobCount();
  /// An idle call that polls, after the time that takes, and the poll, which brings `command`.
  void Poll(const std::string& command);
  /// The same and the idle call that carries the command out, with what it has to send.
  void CarryOut(const std::string& command);

  /// The requests since the last call but polls, with their bodies: "POST /api/bridge/push {...}".
  Texts Sent();
  /// What Sent() has for these.
  static std::string Pushed(const std::string& type, const std::string& content, const std::string& label = "");
  static std::string Told(const std::string& code, const std::string& status, const std::string& message);
  static std::string Ended(const std::string& id, const std::string& error = "");

  /// What the host answers to the starts of scripts, 0 when there is nothing here.
  std::vector<short> startErrors;
  /// What it was asked: "file|script|control|parameter", "-" for none.
  Texts starts;
  /// Called within the next evaluation, and the next start of a script.
  std::function<void()> duringEvaluation, duringStart;

  /// The commands that the service has, which it hands out in order.
  std::deque<std::string> commands;
  /// What else it answers to requests that begin so; all others get 200.
  std::map<std::string, CannedAnswer> answers;

  FakePasteboard pasteboard;
  struct Host : ScriptedHost {
    explicit Host(BridgeTest& test) : test(test) {}
    short Evaluate(std::uint64_t file, std::u16string_view expression, calc::Value& result) override;
    BridgeTest& test;
  } host{*this};

 private:
  CannedAnswer Answer(const std::string& request);

  static BridgeTest* current_;
  std::size_t seen_ = 0;

 protected:
  LoopbackServer server{Answering([this](const std::string& request) { return Answer(request); })};  // ends first
};
