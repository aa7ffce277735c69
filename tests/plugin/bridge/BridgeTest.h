// A signed-in bridge whose surroundings a test controls: clock, background, pasteboard, host and service.
#pragma once

#include <deque>
#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "core/State.h"
#include "net/Json.h"
#include "net/Transfer.h"
#include "support/FakePasteboard.h"
#include "support/FolderTest.h"
#include "support/ScriptedHost.h"

using Texts = std::vector<std::string>;

/// Each of `texts` with a line ending, as rows of tables have them.
inline std::string Lines(const Texts& texts) {
  std::string lines;
  for (const auto& text : texts) lines += text + '\n';
  return lines;
}

class BridgeTest : public FolderTest {
 public:
  BridgeTest();

  /// The running test, which the seams use.
  static inline BridgeTest* current;

  std::int64_t now = 1'000'000;             ///< the clock
  std::function<void()> onClock;            ///< called when it is read
  std::vector<std::function<void()>> jobs;  ///< background jobs that have not run

  /// What the plug-in has done, in order: requests other than polls ("POST http://s/path body"), starts of scripts
  /// ("start file|script|control|parameter", "-" for none), notifications ("notify title: message").
  Texts effects;
  /// The effects since the last call.
  Texts Effects() { return std::exchange(effects, {}); }
  /// Called when a request is made.
  std::function<void()> onRequest;
  /// All requests so far, polls among them.
  std::vector<Network::Request> requests;

  /// The service's commands, sent in this order.
  std::deque<std::string> commands;
  /// The service's answers by the start of the path; any other request gets an empty 200.
  std::map<std::string, Network::Outcome> answers;

  /// The host's answers to the next starts of scripts, then 0.
  std::deque<short> startErrors;
  /// How many more evaluations work before one fails; negative: all work.
  int evaluationsBeforeError = -1;
  /// Called within the next evaluation, and the next start of a script.
  std::function<void()> duringEvaluation, duringStart;

  FakePasteboard pasteboard;
  struct Host : ScriptedHost {
    short Evaluate(std::uint64_t file, std::u16string_view expression, calc::Value& result) override;
  } host;
  /// Makes `name` FileMaker's current file, the only one that it knows.
  void Activate(const std::string& name) { host.answers = {{"Get(FileName)", name}}; }

  /// One idle message.
  void Idle(int level = 0);
  /// Runs the waiting jobs, in order, and those that they start, while another account is signed in.
  void RunJobs();
  /// Idle, then RunJobs; returns the effects.
  Texts Step(int level = 0);
  /// Lets a poll become due, and takes a step in which it receives the command `id` with further JSON `members`.
  void Poll(const std::string& type, const std::string& members = "", const std::string& id = "c1");
  /// Polls in the same way, then takes the step that carries out the command; returns its effects.
  Texts CarryOut(const std::string& type, const std::string& members = "", const std::string& id = "c1");

  /// The pending schema request: "c1 Sales armed", "c1 Sales started", or "".
  static std::string SchemaRequestState();

  /// The end of the command `id` of the account K1, as Effects() has it.
  static std::string Ended(const std::string& id, const std::string& status = R"("completed")") {
    return "POST http://s/api/bridge/command/" + id + R"(/complete {"licenseKey":"K1","status":)" + status + "}";
  }
  static std::string Failed(const std::string& id, const std::string& error) {
    return Ended(id, R"("failed","error":")" + JsonEscape(error) + '"');
  }
};
