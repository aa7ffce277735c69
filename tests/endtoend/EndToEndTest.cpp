// A thousand commands in a row while the service is killed and started again: the outcome of each is known, none is
// carried out twice, and FileMaker's process does not grow.
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <nlohmann/json.hpp>
#include <optional>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "service/RunningService.h"
#include "support/Entries.h"
#include "support/FolderTest.h"

namespace {

using nlohmann::json;

constexpr int kCommands = 1000;
constexpr int kMeasuredAt = 100;
constexpr int kKills = 10;
constexpr int kFirstKill = 120;
constexpr int kKillDistance = 85;  // from kill to kill, each at another type
constexpr int kHitByOneKill = 3;   // in progress or in transit at the same moment, at most
constexpr auto kPatience = std::chrono::seconds(100);
constexpr auto kLookInterval = std::chrono::milliseconds(5);

// The types, and the names of the records that the plug-in sends while it carries them out.
const std::pair<const char*, std::vector<std::string>> kTypes[] = {{"SET_CLIPBOARD", {}},
                                                                   {"GET_CLIPBOARD", {"XMSS"}},
                                                                   {"GET_CLIPBOARD_FORMATS", {"CLIPBOARD_FORMATS"}},
                                                                   {"LIST_FILES", {"FILE_LIST"}},
                                                                   {"DEBUG_CONTEXT", {"CONTEXT_DEBUG"}},
                                                                   {"GET_SCHEMA", {"FILE_LIST", "Workshop.fmp12.xml"}}};

// What the clipboard holds after the set command `number`.
std::string Snippet(std::size_t number) {
  return R"xml(<fmxmlsnippet type="FMObjectList"><Step enable="True" id="89" name="# (comment)"><Text>)xml" +
         std::to_string(number) + "</Text></Step></fmxmlsnippet>";
}

std::string ContextFile(std::size_t number) { return "Context " + std::to_string(number); }

json Command(std::size_t number) {
  const std::string type = kTypes[number % std::size(kTypes)].first;
  json command{{"type", type}, {"expires", "10000000"}};
  if (type == "SET_CLIPBOARD") command.update({{"xmlType", "XMSS"}, {"xmlContent", Snippet(number)}});
  if (type == "DEBUG_CONTEXT") command["fileName"] = ContextFile(number);
  if (type == "GET_SCHEMA") command["fileName"] = "Workshop";
  return command;
}

// The resources that a process uses.
struct Footprint {
  explicit Footprint(pid_t pid) {
    const std::string process = "/proc/" + std::to_string(pid);
    std::ifstream(process + "/statm") >> addressPages >> residentPages;
    for (const auto& thread : std::filesystem::directory_iterator(process + "/task")) {
      ++threads;
      descriptors = std::max<long>(descriptors, EntriesOf((thread.path() / "fd").c_str()));
    }
  }
  long addressPages = 0, residentPages = 0, threads = 0;
  long descriptors = 0;  // of the thread with the most; threads may have their own tables
};

// Each service believes that a day has passed since the one before it. That distinguishes what a kill has interrupted
// from what is late, and no service waits for results that will never come.
bool IsOpen(const json& command) {
  return command.at("state") == "queued" ||
         (command.at("state") == "delivered" && command.at("secondsInState") < 12 * 3600);
}

bool WasCutOff(const json& command) {
  if (command.at("state") == "delivered") return !IsOpen(command);
  const auto day = [&](const char* time) { return command.at(time).get<std::string>().substr(0, 10); };
  return command.at("state") == "failed" && day("deliveredAt") != day("finishedAt") &&
         command.value("error", "").find("ERROR: ") != std::string::npos;
}

class EndToEnd : public FolderTest {
 protected:
  void StartService(int daysAhead) {
    const std::string port = service_ ? service_->port() : "0";
    setenv("LD_PRELOAD", TEST_CLOCK, 1);
    setenv("SYSTEM_DAYS_AHEAD", std::to_string(daysAhead).c_str(), 1);
    service_.emplace(folder_ + "/data", std::vector<std::string>{"--no-key"}, port);
    unsetenv("LD_PRELOAD");
  }

  json Get(const std::string& path) const { return json::parse(service_->Get("/operator/" + path).body); }
  json State(int number) const { return Get("commands/" + ids_.at(static_cast<std::size_t>(number))); }
  std::string Content(const json& record) const {
    return service_->Get("/operator/records/" + record.dump() + "/content").body;
  }

  void Await(const std::function<bool()>& isMet) const {
    while (!isMet()) {
      ASSERT_LT(std::chrono::steady_clock::now(), end_);
      std::this_thread::sleep_for(kLookInterval);
    }
  }

  bool IsRight(const json& command) const {
    static const std::string schema = Contents(SAMPLES "/Workshop.xml");
    const std::string type = command.at("type");
    const std::string result = command.contains("result") ? Content(command.at("result")) : "";
    if (type == "GET_CLIPBOARD") return onClipboard_.contains(result);
    if (type == "GET_CLIPBOARD_FORMATS") return result.find("Mac-XMSS") != result.npos;
    if (type == "LIST_FILES") return result == "Workshop";
    if (type == "DEBUG_CONTEXT") return json::parse(result).at("targetFile") == command.at("fileName");
    if (type == "GET_SCHEMA") return result == schema;
    return result.empty();
  }

  // In the order of delivery: commands overtake one that must wait because its result could be confused.
  void CheckCommands(std::vector<json> commands) {
    for (std::size_t i = 0; i < commands.size(); ++i) commands[i]["number"] = i;
    std::stable_sort(commands.begin(), commands.end(),
                     [](const json& a, const json& b) { return a.at("deliveredAt") < b.at("deliveredAt"); });
    int unfinished = 0;
    for (const json& command : commands) {
      const bool completed = command.at("state") == "completed";
      if (command.at("type") == "SET_CLIPBOARD") {
        if (completed) onClipboard_.clear();
        onClipboard_.insert(Snippet(command.at("number")));
      }
      if (!completed) ++unfinished;
      EXPECT_TRUE(completed ? IsRight(command) : WasCutOff(command)) << command;
    }
    EXPECT_LE(unfinished, kKills * kHitByOneKill);
  }

  // Each completed command has its own record, so it was carried out exactly once, and the others at most once. Setting
  // the clipboard leaves no record; the order of these commands shows in what the others found there.
  void CheckRecords() const {
    std::map<std::string, int> allowed;
    for (std::size_t i = 0; i < kCommands; ++i) {
      for (const auto& name : kTypes[i % std::size(kTypes)].second) ++allowed[name];
    }
    std::set<std::string> contexts;
    for (const char* kind : {"push", "ingest"}) {
      const json records = Get(std::string("records?limit=1000&kind=") + kind).at("records");
      for (const json& record : records) {
        const std::string name = record.at("name");
        EXPECT_GE(--allowed[name], 0) << name;
        if (name != "CONTEXT_DEBUG") continue;
        const std::string context = json::parse(Content(record.at("number"))).at("targetFile");
        EXPECT_TRUE(contexts.insert(context).second) << context << " twice";
      }
    }
  }

  const std::chrono::steady_clock::time_point end_ = std::chrono::steady_clock::now() + kPatience;
  std::optional<RunningService> service_;
  std::vector<std::string> ids_;
  std::set<std::string> onClipboard_;  // more than one where a set command was delivered but not completed
};

// With one malloc arena, because memory in separate arenas depends on which thread happens to run what; and without a
// path to the program that shows notifications.
constexpr char kFastFileMaker[] =
    "exec env LD_PRELOAD=" TEST_CLOCK
    " STEADY_SPEED=500 MALLOC_ARENA_MAX=1 ASAN_OPTIONS=quarantine_size_mb=0 PATH= TMPDIR=$XDG_CONFIG_HOME " FMSIM
    " --plugin " PLUGIN_FILE " --open " SAMPLES "/Workshop.xml --idle-interval 1";

TEST_F(EndToEnd, KnowsTheOutcomeOfAThousandCommandsAlthoughTheServiceIsKilledTenTimes) {
  StartService(0);
  for (std::size_t i = 0; i < kCommands; ++i) {
    ids_.push_back(json::parse(service_->Post("/operator/commands", Command(i).dump()).body).at("id"));
  }
  ChildProcess fileMaker({"sh", "-c", kFastFileMaker}, folder_ + "/errors");
  fileMaker.Write(R"(Varnix.Register ( "you@example.com" ; "local" ; "machine" ; ")" + service_->url() + "\" )\n");
  ASSERT_NO_FATAL_FAILURE(Await([this] { return !IsOpen(State(kMeasuredAt)); }));
  const Footprint before(fileMaker.pid());
  for (int kill = 0; kill < kKills; ++kill) {
    // One kill hits a command in progress, the next kill the poll after it.
    ASSERT_NO_FATAL_FAILURE(Await([this, kill] {
      const json command = State(kFirstKill + kill * kKillDistance);
      return kill % 2 == 0 ? command.at("state") != "queued" : !IsOpen(command);
    }));
    ASSERT_EQ(service_->End(SIGKILL), 128 + SIGKILL);
    StartService(kill + 1);
  }
  json commands;
  ASSERT_NO_FATAL_FAILURE(Await([&] {
    if (IsOpen(State(kCommands - 1))) return false;
    commands = Get("commands?limit=1000").at("commands");
    return std::none_of(commands.begin(), commands.end(), IsOpen);
  }));
  const Footprint after(fileMaker.pid());
  EXPECT_EQ(fileMaker.End(), 0);
  EXPECT_EQ(Contents(folder_ + "/errors"), "") << "host objects left alive are named here";
  EXPECT_EQ(fileMaker.ReadLine() + fileMaker.ReadLine(), "OK");
  EXPECT_EQ(commands.size(), std::size_t{kCommands});
  CheckCommands(commands);
  CheckRecords();
  EXPECT_LE(after.residentPages, before.residentPages + MEMORY_SLACK_PAGES);
  EXPECT_LE(after.threads, before.threads + 8);
  EXPECT_LE(after.descriptors, before.descriptors + 4);
}

}  // namespace
