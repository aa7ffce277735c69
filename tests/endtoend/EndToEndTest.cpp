// A thousand commands in a row while the service is killed and started again: what became of each is known, none is
// carried out twice, and FileMaker's process does not grow.
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <map>
#include <nlohmann/json.hpp>
#include <optional>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "endtoend/FastFileMaker.h"
#include "net/Json.h"
#include "service/RunningService.h"
#include "support/FolderTest.h"

namespace {

using nlohmann::json;

constexpr int kCommands = 1000;
constexpr int kMeasuredAt = 100;
constexpr int kKills = 10;
constexpr int kFirstKill = 120;
constexpr int kKillDistance = 85;   // from kill to kill at another type
constexpr int kHitByOneKill = 3;    // at work or on their way at the same moment, at most
constexpr int kNoticedWithin = 20;  // commands, while the test gets round to its kill
constexpr long kMemorySlackKb = 2048;
constexpr long kThreadSlack = 8;
constexpr long kDescriptorSlack = 4;
constexpr auto kPatience = std::chrono::seconds(100);
constexpr auto kLookInterval = std::chrono::milliseconds(2);

const char* const kTypes[] = {"SET_CLIPBOARD", "GET_CLIPBOARD", "GET_CLIPBOARD_FORMATS",
                              "LIST_FILES",    "DEBUG_CONTEXT", "GET_SCHEMA"};
constexpr int kTypeCount = std::size(kTypes);

std::string TypeOf(int number) { return kTypes[number % kTypeCount]; }

// What the clipboard holds after the set command `number`.
std::string Snippet(int number) {
  return R"xml(<fmxmlsnippet type="FMObjectList"><Step enable="True" id="89" name="# (comment)"><Text>)xml" +
         std::to_string(number) + "</Text></Step></fmxmlsnippet>";
}

std::string ContextFile(int number) { return "Context " + std::to_string(number); }

json Command(int number) {
  json command{{"type", TypeOf(number)}, {"expires", "1000"}};
  if (TypeOf(number) == "SET_CLIPBOARD") command.update({{"xmlType", "XMSS"}, {"xmlContent", Snippet(number)}});
  if (TypeOf(number) == "DEBUG_CONTEXT") command["fileName"] = ContextFile(number);
  if (TypeOf(number) == "GET_SCHEMA") command["fileName"] = "Workshop";
  return command;
}

int KilledAt(int kill) { return kFirstKill + kill * kKillDistance; }

bool IsNearAKill(int number) {
  const int nearest = (number - kFirstKill + kKillDistance / 2) / kKillDistance;
  return std::abs(number - KilledAt(std::clamp(nearest, 0, kKills - 1))) <= kNoticedWithin;
}

// What the plug-in sends while it carries out a command: the names of the records, with marks where there are some.
std::vector<std::string> Traces(int number) {
  const std::string type = TypeOf(number);
  if (type == "GET_CLIPBOARD") return {"XMSS"};
  if (type == "GET_CLIPBOARD_FORMATS") return {"CLIPBOARD_FORMATS"};
  if (type == "LIST_FILES") return {"FILE_LIST"};
  if (type == "DEBUG_CONTEXT") return {"CONTEXT_DEBUG " + ContextFile(number)};
  if (type == "GET_SCHEMA") return {"FILE_LIST", "Workshop.fmp12.xml"};
  return {};
}

class EndToEnd : public FolderTest {
 protected:
  void StartService() {
    const std::string port = service_ ? service_->port() : "0";
    service_.emplace(folder_ + "/data", std::vector<std::string>{"--no-key"}, port);
  }

  void Await(int number, bool finished) {
    for (std::string state = "queued"; state == "queued" || (finished && state == "delivered");) {
      ASSERT_LT(std::chrono::steady_clock::now(), end_) << number << " is still " << state;
      std::this_thread::sleep_for(kLookInterval);
      state = service_->Told(ids_.at(static_cast<std::size_t>(number)), "state");
    }
  }

  std::vector<json> List(const std::string& path) const {
    return json::parse(service_->Get(path + "limit=1000").body).begin()->get<std::vector<json>>();
  }

  std::string Content(const json& record) const {
    return service_->Get("/operator/records/" + record.dump() + "/content").body;
  }

  void CheckCommands();
  bool IsRight(int number, const std::string& result) const;
  void CheckRecords() const;

  const std::chrono::steady_clock::time_point end_ = std::chrono::steady_clock::now() + kPatience;
  std::optional<RunningService> service_;
  std::vector<std::string> ids_;
  std::set<std::string> onClipboard_;  // more than one where a set command was delivered but not completed
};

void EndToEnd::CheckCommands() {
  const auto commands = List("/operator/commands?");
  ASSERT_EQ(commands.size(), static_cast<std::size_t>(kCommands));
  std::map<std::string, int> states;
  for (int i = 0; i < kCommands; ++i) {
    const json& command = commands[static_cast<std::size_t>(i)];
    const std::string state = command.at("state");
    ++states[state];
    if (TypeOf(i) == "SET_CLIPBOARD") {
      if (state == "completed") onClipboard_.clear();
      onClipboard_.insert(Snippet(i));
    }
    if (state == "completed") {
      const std::string result = command.contains("result") ? Content(command.at("result")) : "";
      EXPECT_TRUE(IsRight(i, result)) << command << ": " << result.substr(0, 1000);
      continue;
    }
    EXPECT_TRUE(IsNearAKill(i)) << i << ": " << command;
    // An upload or push that was cut off may be reported to the next service.
    EXPECT_TRUE(state == "delivered" || command.value("error", "").find("ERROR: ") != std::string::npos) << command;
  }
  EXPECT_EQ(states["queued"], 0);
  EXPECT_LE(states["delivered"] + states["failed"], kKills * kHitByOneKill);
}

bool EndToEnd::IsRight(int number, const std::string& result) const {
  static const std::string schema = Contents(SAMPLES "/Workshop.xml");
  const std::string type = TypeOf(number);
  if (type == "GET_CLIPBOARD") return onClipboard_.contains(result);
  if (type == "GET_CLIPBOARD_FORMATS") return result.find("Mac-XMSS") != result.npos;
  if (type == "LIST_FILES") return result == "Workshop";
  if (type == "DEBUG_CONTEXT") return JsonGetString(result, "targetFile") == ContextFile(number);
  if (type == "GET_SCHEMA") return result == schema;
  return result.empty();
}

// As each completed command has a record of its own, it was carried out exactly once, and the others at most once. How
// often one set the clipboard leaves no record; its order among the others was seen in what they found there.
void EndToEnd::CheckRecords() const {
  std::map<std::string, int> expected, found;
  for (int i = 0; i < kCommands; ++i) {
    for (const auto& trace : Traces(i)) ++expected[trace];
  }
  for (const auto& record : List("/operator/records?kind=push&")) {
    std::string trace = record.at("name");
    if (trace == "CONTEXT_DEBUG") trace += ' ' + JsonGetString(Content(record.at("number")), "targetFile");
    ++found[trace];
  }
  for (const auto& record : List("/operator/records?kind=ingest&")) ++found[record.at("name")];
  for (const auto& [trace, count] : found) EXPECT_LE(count, expected[trace]) << trace;
}

TEST_F(EndToEnd, KnowsWhatBecameOfAThousandCommandsThoughTheServiceIsKilledTenTimes) {
  StartService();
  for (int i = 0; i < kCommands; ++i) {
    ids_.push_back(JsonGetString(service_->Post("/operator/commands", Command(i).dump()).body, "id"));
  }
  FastFileMaker fileMaker(folder_);
  fileMaker.Type(R"(Varnix.Register ( "you@example.com" ; "local" ; "machine" ; ")" + service_->url() + "\" )");
  ASSERT_NO_FATAL_FAILURE(Await(kMeasuredAt, true));
  const Footprint before = fileMaker.Measure();
  for (int kill = 0; kill < kKills; ++kill) {
    // One kill meets a command at work, the next the poll that follows it.
    ASSERT_NO_FATAL_FAILURE(Await(KilledAt(kill), kill % 2 != 0));
    ASSERT_EQ(service_->End(SIGKILL), 128 + SIGKILL);
    StartService();
  }
  for (int i = KilledAt(kKills - 1) + kNoticedWithin; i < kCommands; ++i) ASSERT_NO_FATAL_FAILURE(Await(i, true));
  const Footprint after = fileMaker.Measure();
  EXPECT_EQ(fileMaker.End(), 0);
  EXPECT_EQ(fileMaker.Errors(), "") << "host objects left alive are named here";
  EXPECT_EQ(fileMaker.ReadLine(), "OK");
  EXPECT_EQ(fileMaker.ReadLine(), "");
  CheckCommands();
  CheckRecords();
  EXPECT_LE(after.residentKb, before.residentKb + kMemorySlackKb);
  EXPECT_LE(after.threads, before.threads + kThreadSlack);
  EXPECT_LE(after.descriptors, before.descriptors + kDescriptorSlack);
}

}  // namespace
