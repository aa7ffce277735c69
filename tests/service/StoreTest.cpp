// What happens to commands and records over time, on a clock that the test sets.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <atomic>
#include <filesystem>
#include <fstream>
#include <optional>
#include <thread>
#include <vector>

#include "store/Store.h"
#include "support/FolderTest.h"

namespace {

using service::Cancellation;
using service::Completion;
using service::Deletion;
using namespace std::chrono_literals;

class StoreOverTime : public FolderTest {
 protected:
  std::string Queue(const char* type, std::optional<std::string> file = {},
                    std::optional<std::chrono::seconds> queuedFor = {}) {
    return store_->Enqueue(*service::FindCommandType(type), {std::move(file), {}, {}}, queuedFor);
  }
  // The id of the command that a poll gets; "" for none.
  std::string Deliver() {
    const auto command = store_->Deliver();
    return command ? command->id : "";
  }
  std::int64_t Push(const char* name, const char* content) {
    const bool ofClipboard = std::string_view(name).starts_with("XM");
    const auto label = ofClipboard ? std::nullopt : std::optional<std::string_view>("label");
    return store_->Add({"push", name, label, content});
  }
  std::int64_t Upload(const char* name, const char* content) { return store_->Add({"ingest", name, {}, content}); }
  Completion Complete(const std::string& id, const char* state = "completed") {
    return store_->Complete(id, state, std::nullopt);
  }
  std::string Result(const std::string& id) {
    const auto command = store_->FindCommand(id);
    return command->result ? store_->Content(*command->result) : "none";
  }
  std::string State(const std::string& id) { return store_->FindCommand(id)->state; }
  void Open() {
    store_.emplace(folder_ + "/data", [this] { return now_; });
  }
  void SetUp() override { Open(); }

  std::int64_t now_ = 1'700'000'000'000;
  std::optional<service::Store> store_;
};

TEST_F(StoreOverTime, GivesEachCommandItsOwnResult) {
  Upload("Sales.fmp12.xml", "older than the delivery");
  const auto failed = Queue("GET_SCHEMA", "Sales");
  EXPECT_EQ(Deliver(), failed);
  Upload("Sales.fmp12.xml", "pushed by hand");
  Complete(failed, "failed");
  EXPECT_EQ(Result(failed), "none");

  const auto schema = Queue("GET_SCHEMA", "Sales"), list = Queue("LIST_FILES");
  EXPECT_EQ(Deliver(), schema);
  EXPECT_EQ(Deliver(), list) << "their results cannot be confused";
  Upload("Other.fmp12.xml", "of another file");
  Push("FILE_LIST", "Sales");
  Complete(list);
  Complete(schema);
  EXPECT_EQ(Result(list), "Sales");
  EXPECT_EQ(Result(schema), "none");
}

TEST_F(StoreOverTime, DeliversOneCommandOfAKindAtATime) {
  const struct {
    const char* type;
    std::int64_t longest;
  } kinds[] = {{"GET_CLIPBOARD", 10'000}, {"LIST_FILES", 10'000}, {"GET_SCHEMA", 45'000}};
  for (const auto& kind : kinds) {
    const auto first = Queue(kind.type), second = Queue(kind.type), third = Queue(kind.type);
    EXPECT_EQ(Deliver(), first) << kind.type;
    EXPECT_EQ(Deliver(), "") << kind.type;
    Complete(first);
    EXPECT_EQ(Deliver(), second) << "after the completion of " << kind.type;
    now_ += kind.longest - 1;
    EXPECT_EQ(Deliver(), "") << kind.type;
    now_ += 1;
    EXPECT_EQ(Deliver(), third) << "though the second was lost, " << kind.type;
    Complete(second);
    Complete(third);
  }
  const auto first = Queue("SET_CLIPBOARD"), second = Queue("SET_CLIPBOARD");
  EXPECT_EQ(Deliver(), first);
  EXPECT_EQ(Deliver(), second) << "it has no result";
}

TEST_F(StoreOverTime, TakesTimesInTheFutureForPastWhenTheClockIsSetBack) {
  const auto lost = Queue("LIST_FILES"), next = Queue("LIST_FILES"), forgotten = Queue("GET_CLIPBOARD");
  const auto another = Queue("GET_SCHEMA", {}, 1h);
  EXPECT_EQ(Deliver(), lost);
  EXPECT_EQ(Deliver(), forgotten);
  EXPECT_EQ(Deliver(), another);
  store_->Forget(forgotten);
  store_->Forget(another);
  EXPECT_EQ(Deliver(), "");
  now_ -= 3'600'000;
  EXPECT_EQ(Deliver(), next);
  EXPECT_EQ(store_->DeleteCommand(forgotten), Deletion::kDeleted);
  EXPECT_EQ(store_->DeleteCommand(another), Deletion::kDeleted);
  const auto old = Queue("GET_SCHEMA");
  now_ += 1;
  EXPECT_EQ(Deliver(), old);
  now_ -= 3'600'000;
  store_->Forget(old);
  now_ += 1;
  EXPECT_EQ(store_->Prune(0s, 0).commands, 1) << "though the clock says that its answer may come";
}

TEST_F(StoreOverTime, CancelsAndExpiresOnlyWhatIsQueued) {
  const auto cancelled = Queue("LIST_FILES"), brief = Queue("GET_SCHEMA", {}, 5s), clipboard = Queue("GET_CLIPBOARD");
  const auto delivered = Queue("DEBUG_CONTEXT"), long_ = Queue("GET_CLIPBOARD_FORMATS", {}, 1h);
  EXPECT_EQ(store_->Cancel(cancelled), Cancellation::kCancelled);
  EXPECT_EQ(store_->Cancel(cancelled), Cancellation::kOtherState);
  EXPECT_EQ(store_->Cancel("no such"), Cancellation::kUnknown);
  EXPECT_EQ(Complete(cancelled), Completion::kNotDelivered);
  now_ += 5000;
  EXPECT_EQ(State(brief), "expired");
  EXPECT_EQ(Deliver(), clipboard);
  Complete(clipboard);
  const auto late = Queue("GET_CLIPBOARD");
  now_ += 59'999;
  EXPECT_EQ(State(late), "queued");
  now_ += 1;
  EXPECT_EQ(Deliver(), delivered) << "the clipboard's expired";
  EXPECT_EQ(State(late), "expired");
  now_ += 601'000;
  EXPECT_EQ(State(delivered), "delivered");
  EXPECT_EQ(Deliver(), long_);
}

TEST_F(StoreOverTime, GivesALateResultToTheForgottenCommandOnly) {
  const auto forgotten = Queue("LIST_FILES"), next = Queue("LIST_FILES");
  EXPECT_EQ(Deliver(), forgotten);
  EXPECT_EQ(store_->Forget(forgotten), Cancellation::kCancelled);
  EXPECT_EQ(store_->Forget(forgotten), Cancellation::kOtherState);
  EXPECT_EQ(store_->Count().delivered, 0);
  EXPECT_EQ(Deliver(), "") << "the plug-in may be at work on the first one";
  EXPECT_EQ(store_->DeleteCommand(forgotten), Deletion::kAnswerMayCome);
  now_ += 10'000;
  EXPECT_EQ(store_->Prune(0s, 0).commands, 0) << "nor does it go with what is old";
  EXPECT_EQ(Deliver(), next);
  Push("FILE_LIST", "late");
  EXPECT_EQ(Complete(forgotten), Completion::kAccepted);
  EXPECT_EQ(Complete(forgotten), Completion::kAccepted);
  EXPECT_EQ(State(forgotten), "cancelled");
  EXPECT_EQ(Result(forgotten), "late");
  Complete(next);
  EXPECT_EQ(Result(next), "none");
  EXPECT_EQ(store_->DeleteCommand(forgotten), Deletion::kDeleted);
  EXPECT_EQ(Complete(forgotten), Completion::kUnknown);

  const auto schema = Queue("GET_SCHEMA"), queued = Queue("DEBUG_CONTEXT");
  EXPECT_EQ(store_->Forget(queued), Cancellation::kCancelled);
  EXPECT_EQ(store_->DeleteCommand(queued), Deletion::kDeleted);
  EXPECT_EQ(Deliver(), schema);
  store_->Forget(schema);
  const auto diagnostic = store_->Add({"diagnostic", "LC_SCHEMA_TIMEOUT", "failed", "late"});
  EXPECT_EQ(store_->FindRecord(diagnostic)->command, schema);
  EXPECT_EQ(store_->Complete(schema, "failed", "no such file"), Completion::kAccepted);
  EXPECT_EQ(store_->FindCommand(schema)->error, "no such file");
  EXPECT_EQ(State(schema), "cancelled");
  EXPECT_EQ(store_->DeleteCommand(schema), Deletion::kDeleted) << "it is answered";
}

TEST_F(StoreOverTime, KeepsIdenticalContentsOnceAndPrunesWhatIsOld) {
  const std::string large(1 << 20, 'x');
  for (int i = 0; i < 5; ++i) Upload("A.fmp12.xml", large.c_str());
  EXPECT_LT(std::filesystem::file_size(folder_ + "/data/varnix-service.db-wal"), 2u << 20);
  const auto schema = Queue("GET_SCHEMA", "A");
  Deliver();
  now_ += 10'000;
  Upload("A.fmp12.xml", "new");
  Complete(schema);
  now_ += 90'000;
  const auto pruned = store_->Prune(95s, 2);
  EXPECT_EQ(pruned.records, 4) << "of six the newest two stay";
  EXPECT_EQ(pruned.commands, 0);
  EXPECT_EQ(Result(schema), "new");
  now_ += 1000;
  EXPECT_EQ(store_->Prune(0s, 0).commands, 1);
  EXPECT_EQ(store_->Records({}, {}, 9).size(), 0u);
  store_.reset();
  EXPECT_LT(std::filesystem::file_size(folder_ + "/data/varnix-service.db"), 200'000u) << "the space is given back";
}

TEST_F(StoreOverTime, DeliversWhileMuchIsDeleted) {
  for (const char letter : {'a', 'b', 'c', 'd'}) Upload("A.fmp12.xml", std::string(10 << 20, letter).c_str());
  std::atomic<bool> isDeleting = false, isDone = false;
  store_->Observe([&](service::Topic) { isDeleting = true; });
  now_ += 1;
  std::thread deletion([&] {
    EXPECT_EQ(store_->Prune(0s, 1).records, 3);
    EXPECT_TRUE(store_->DeleteRecord(4));
    isDone = true;
  });
  int polls = 0;
  while (!isDone) {
    EXPECT_EQ(Deliver(), "");
    if (isDeleting) ++polls;
  }
  deletion.join();
  EXPECT_GT(polls, 20) << "while the space is given back";
  store_.reset();
  EXPECT_LT(std::filesystem::file_size(folder_ + "/data/varnix-service.db"), 200'000u);
}

TEST_F(StoreOverTime, LeavesSpaceToTheNextProcessWhenItEnds) {
  Upload("A.fmp12.xml", std::string(20 << 20, 'a').c_str());
  store_->EndUpkeep();
  EXPECT_TRUE(store_->DeleteRecord(1));
  store_.reset();
  const std::string database = folder_ + "/data/varnix-service.db";
  EXPECT_GT(std::filesystem::file_size(database), 20u << 20);
  Open();
  store_->GiveSpaceBack();
  store_.reset();
  EXPECT_LT(std::filesystem::file_size(database), 200'000u);
}

TEST_F(StoreOverTime, ReportsAChangeOnce) {
  using service::Topic;
  std::vector<Topic> changes;
  store_->Observe([&](Topic topic) { changes.push_back(topic); });
  Push("XMSS", "<fmxmlsnippet/>");
  Push("FILE_LIST", "Sales");
  EXPECT_EQ(changes, (std::vector{Topic::kRecords, Topic::kClips, Topic::kRecords})) << "a list of files is not a clip";
}

TEST_F(StoreOverTime, RefusesWhatOthersCanWriteAndADatabaseThatIsGone) {
  std::filesystem::remove(folder_ + "/data/varnix-service.db");
  EXPECT_THROW(Queue("LIST_FILES"), service::StoreGone);
  EXPECT_THROW(store_->Deliver(), service::StoreGone);
  store_.reset();
  for (const char* path : {"/data", "/data/varnix-service.db"}) {
    Open();
    store_.reset();
    chmod((folder_ + path).c_str(), 0770);
    EXPECT_THROW(Open(), std::runtime_error) << path;
    chmod((folder_ + path).c_str(), 0700);
  }
}

TEST_F(StoreOverTime, MigratesDatabasesOfOlderVersions) {
  for (const char* version : {"/first-version.sql", "/second-version.sql"}) {
    store_.reset();
    std::filesystem::remove_all(folder_ + "/data");
    std::filesystem::create_directory(folder_ + "/data");
    service::Database old(folder_ + "/data/varnix-service.db");
    old.Execute(Contents(DATA + std::string(version)).c_str());
    old = service::Database(folder_ + "/other.db");
    Open();
    EXPECT_EQ(Result("c2"), std::string("A\0\xff", 3)) << version;
    EXPECT_EQ(Deliver(), "c1") << "it never expires, " << version;
    store_->SetRetention({7, {}});
    EXPECT_EQ(store_->GetRetention().days, 7) << version;
    EXPECT_TRUE(store_->Sessions().empty()) << version;
    const auto clips = store_->Clips({"sound", "", ""}, 9).clips;
    ASSERT_EQ(clips.size(), 1u) << version;
    EXPECT_EQ(clips[0].title, "Beep") << version;
    EXPECT_EQ(clips[0].times, 2) << version;
    EXPECT_EQ(store_->Clips({}, 9).total, 2) << version;
  }
}

}  // namespace
