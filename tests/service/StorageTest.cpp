// Setup, deletions, retention and backups through the console.
#include <gtest/gtest.h>

#include <atomic>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <thread>

#include "console/Watch.h"
#include "net/Json.h"
#include "service/RequestRows.h"
#include "service/RunningService.h"
#include "store/Store.h"
#include "support/FolderTest.h"

namespace {

using namespace std::chrono_literals;

class Storage : public FolderTest {
 protected:
  // Waits until the list has `count` designs.
  static void AwaitDesigns(const RunningService& service, std::size_t count) {
    for (;;) {
      const std::string list = service.Get("/operator/designs").body;
      std::size_t found = 0;
      for (auto at = list.find(R"("id":)"); at != list.npos; at = list.find(R"("id":)", at + 1)) ++found;
      if (found == count) return;
      std::this_thread::sleep_for(1ms);
    }
  }

  std::size_t Backups() const {
    std::size_t count = 0;
    for (const auto& entry : std::filesystem::directory_iterator(data_)) {
      count += entry.path().filename().string().starts_with(".varnix-backup-") ? 1 : 0;
    }
    return count;
  }

  const std::string data_ = folder_ + "/data";
};

TEST_F(Storage, CarriesOutRequestsOrReportsWhyNot) {
  const RunningService service(data_);
  service.Post("/api/bridge/push", R"({"licenseKey":"K","xmlType":"XMSS","xmlContent":"12345"})");
  const std::string queued = service.Queue(R"("type":"LIST_FILES")"), done = service.Queue(R"("type":"LIST_FILES")");
  service.Post("/operator/commands/" + done + "/cancel", "{}");
  ExpectAnswers(
      service.url(),
      ReadRows("storage.txt", {{"{queued}", queued}, {"{done}", done}, {"{export}", "<FMSaveAsXML File=\"a\"/>"}}));
  const std::string storage = service.Get("/operator/storage").body;
  EXPECT_NE(storage.find(R"("kinds":[{"kind":"push","count":1,"bytes":5}],"retention":{"days":31,"keep":null}})"),
            std::string::npos)
      << storage;
  EXPECT_EQ(JsonGetString(storage, "folder"), data_);
}

TEST_F(Storage, SetsUpFileMaker) {
  const RunningService service(data_, {"--key=Right-1"});
  const httplib::Headers headers{{"Authorization", "Bearer Right-1"}};
  const Placeholders values{{"{url}", service.url()}, {"{data}", data_}};
  const std::string setup = Filled(
      R"x({"url":"{url}","signInLine":"Varnix.Register ( \"you@example.com\" ; \"Right-1\" ; Get ( PersistentID ) ; )x"
      R"x(\"{url}\" )","version":"1.6.16","dataFolder":"{data}","hasKey":true})x",
      values);
  EXPECT_EQ(service.Get("/operator/setup", headers).body, setup);
  EXPECT_EQ(service.Exchange("POST", "/operator/live-push", headers, "{}").status, 201);
  const std::string command = service.Get("/api/bridge/command/next?licenseKey=Right-1").body;
  EXPECT_EQ(JsonGetString(command, "type"), "SET_CLIPBOARD");
  EXPECT_EQ(JsonGetString(command, "xmlType"), "XMSC");
  EXPECT_EQ(JsonGetString(command, "xmlContent"), Contents(SNIPPET));
}

TEST_F(Storage, StaysConsistentWhenAResultIsDeleted) {
  const RunningService service(data_);
  std::string ids[2];
  for (std::string& id : ids) {
    id = service.Queue(R"("type":"GET_SCHEMA")");
    service.Poll();
    service.Post("/api/bridge/diagnostic",
                 R"({"licenseKey":"K","code":"LC_SCHEMA_QUEUED","status":"received","message":"M"})");
    service.Post("/api/live/ingest/K?filename=schema.fmp12.xml", Contents(ORDERS));
    service.Complete(id);
  }
  EXPECT_EQ(service.Post("/operator/records/2/delete", "{}").status, 200);
  EXPECT_EQ(service.Get("/operator/commands/" + ids[0] + "/result").body, R"({"error":"the command has no result"})");
  EXPECT_EQ(service.Member(ids[0], "result"), "");
  EXPECT_EQ(service.Get("/operator/commands/" + ids[1] + "/result").body, Contents(ORDERS));
  EXPECT_EQ(service.Post("/operator/commands/" + ids[1] + "/delete", "{}").status, 200);
  EXPECT_EQ(service.Get("/operator/records/4/content").body, Contents(ORDERS));
  EXPECT_EQ(service.Get("/operator/records/3/content").status, 404) << "its diagnostic";
  EXPECT_EQ(service.Get("/operator/commands/" + ids[1]).status, 404);
}

TEST_F(Storage, DeletesADesignWithItsRepetitionsOnly) {
  const RunningService service(data_);
  const std::string orders = Contents(ORDERS), edited = orders + "\n";
  for (const auto& content : {orders, orders, edited, orders}) {
    service.Post("/api/live/ingest/K?filename=Orders.fmp12.xml", content);
  }
  AwaitDesigns(service, 3);
  EXPECT_EQ(service.Post("/operator/designs/1/delete", "{}").status, 200);
  AwaitDesigns(service, 2);
  EXPECT_EQ(service.Get("/operator/records/2/content").status, 404) << "it came again";
  EXPECT_EQ(service.Get("/operator/records/4/content").body, orders) << "it came back later";
}

TEST_F(Storage, CopiesTheDatabaseAtOneMomentWhileADesignIsIndexed) {
  {
    RunningService service(data_);
    std::ofstream(data_ + "/.varnix-backup-killed") << "left";
    std::filesystem::create_directories(data_ + "/.varnix-backup-folder/of the user");
    std::ofstream(data_ + "/backup-monday.db") << "of the user";
    EXPECT_EQ(service.End(SIGKILL), 128 + SIGKILL);
  }
  const RunningService service(data_);
  EXPECT_EQ(Backups(), 1u) << "the folder";
  EXPECT_TRUE(std::filesystem::exists(data_ + "/backup-monday.db"));
  const std::string large(5 << 20, 'x');
  service.Post("/api/live/ingest/K?filename=Large.xml", large);
  service.Post("/api/live/ingest/K?filename=Orders.xml", Contents(ORDERS));
  const auto answer = service.Get("/operator/backup");
  EXPECT_EQ(answer.status, 200) << answer.body.substr(0, 200);
  EXPECT_EQ(answer.get_header_value("Content-Disposition"), "attachment; filename=\"varnix-service.db\"");
  EXPECT_EQ(answer.get_header_value("Content-Length"), std::to_string(answer.body.size()));
  EXPECT_EQ(Backups(), 1u);
  const std::string copy = folder_ + "/copy";
  std::filesystem::create_directory(copy);
  std::ofstream(copy + "/varnix-service.db", std::ios::binary) << answer.body;
  service::Store store(copy);
  EXPECT_EQ(store.Content(1), large);
  EXPECT_EQ(store.Content(2), Contents(ORDERS));
  std::filesystem::remove(data_ + "/varnix-service.db");
  EXPECT_EQ(service.Get("/operator/backup").status, 503);
  EXPECT_FALSE(std::filesystem::exists(data_ + "/varnix-service.db")) << "an empty one is no copy";
}

TEST_F(Storage, DeletesDailyWhatIsOlderThanItIsKept) {
  std::atomic<std::int64_t> now = 1'700'000'000'000;
  std::atomic<int> looks = 0;
  service::Store store(data_, [&] {
    ++looks;
    return now.load();
  });
  const auto awaitLooks = [&] {
    for (const int before = looks; looks < before + 10;) std::this_thread::sleep_for(1ms);
  };
  const auto add = [&] { return store.Add({"ingest", "A.xml", {}, std::to_string(now)}); };
  const auto await = [&](std::size_t count) {
    while (store.Records({}, {}, 9).size() != count) std::this_thread::sleep_for(1ms);
  };
  constexpr std::int64_t kDay = 86'400'000;
  for (int i = 0; i < 3; ++i, now += kDay) add();
  service::Times times;
  times.watch = 1ms;
  service::Context context{store, service::Access(""), service::BodyLimit(1 << 20), "1", {}, times};
  std::atomic<int> changes = 0;
  context.storeChanged = [&] { ++changes; };
  {
    store.SetRetention({{}, 1});
    const service::Watch watch(context);
    awaitLooks();
    EXPECT_EQ(store.Records({}, {}, 9).size(), 3u) << "without an age nothing is deleted";
  }
  store.SetRetention({2, 1});
  const service::Watch watch(context);
  await(2);
  now += kDay;
  await(1);
  EXPECT_EQ(store.Records({}, {}, 9)[0].number, 3);
  now += 9 * kDay;
  awaitLooks();
  EXPECT_EQ(store.Records({}, {}, 9).size(), 1u) << "the newest is kept";
  EXPECT_EQ(changes, 2);
  store.SetRetention({2, {}});
  awaitLooks();
  EXPECT_EQ(store.Records({}, {}, 9).size(), 1u) << "a day has not passed";
  now -= 5 * kDay;
  await(0);
}

}  // namespace
