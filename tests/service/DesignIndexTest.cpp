// Whether the index of designs belongs to the records, and what the database keeps about designs.
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <future>
#include <optional>

#include "console/Backup.h"
#include "designs/DesignIndexer.h"
#include "designs/DesignStore.h"
#include "http/HttpError.h"
#include "http/Routes.h"
#include "store/Store.h"
#include "support/FolderTest.h"

namespace {

class DesignIndexTest : public FolderTest {
 protected:
  static std::int64_t Add(const std::string& folder, const std::string& word, std::int64_t time = 1) {
    std::string design = Contents(ORDERS);
    const std::string replaced = "[\"Open\"]";
    design.replace(design.find(replaced), replaced.size(), "[\"" + word + "\"]");
    service::Store store(folder, [time] { return time; });
    return store.Add({"ingest", "Orders.fmp12.xml", {}, design});
  }

  // Brings the index up to date, and returns the ids of its designs.
  static std::string Ids(const std::string& folder) {
    service::DesignStore history(folder);
    history.CatchUp(false);
    std::string ids;
    for (const auto& design : history.List("")) ids += std::to_string(design.id) + ' ';
    return ids;
  }

  // Of the designs that contain `word`: "first-last", or "" for none.
  static std::string Found(const std::string& folder, const std::string& word) {
    std::string found;
    service::DesignStore(folder).Search('"' + word + '"', "", [&found](const service::StoredHit& hit) {
      found += std::to_string(hit.firstDesign) + '-' + std::to_string(hit.lastDesign);
    });
    return found;
  }

  static std::string Label(const std::string& folder, std::int64_t id) {
    return service::DesignStore(folder).Find(id)->label.value_or("none");
  }

  static std::string Database(const std::string& folder) { return service::Store::PathIn(folder); }

  const std::string data_ = folder_ + "/data", other_ = folder_ + "/other";
};

TEST_F(DesignIndexTest, FollowsADatabaseThatIsReplaced) {
  for (const std::int64_t later : {1, 2}) {
    std::filesystem::remove_all(data_);
    std::filesystem::remove_all(other_);
    Add(data_, "first");
    const std::string backup = service::MakeBackup(data_);
    Add(data_, "second");
    Add(data_, "third");
    EXPECT_EQ(Ids(data_), "1 2 3 ");

    std::filesystem::rename(backup, Database(data_));
    EXPECT_EQ(Ids(data_), "1 ") << "an older copy";
    EXPECT_EQ(Add(data_, "fourth", later), 2);
    EXPECT_EQ(Add(data_, "third", later), 3);
    EXPECT_EQ(Ids(data_), "1 2 3 ");
    for (const auto& [word, place] : {std::pair("first", "1-1"), {"second", ""}, {"third", "3-3"}, {"fourth", "2-2"}}) {
      EXPECT_EQ(Found(data_, word), place) << word << " of an older copy";
    }

    std::filesystem::remove(Database(data_));
    EXPECT_EQ(Add(data_, "new", later), 1);
    EXPECT_EQ(Ids(data_), "1 ") << "a new database";
    EXPECT_EQ(Found(data_, "new"), "1-1");
    EXPECT_EQ(Found(data_, "first"), "");

    for (const char* word : {"abroad", "away", "afar"}) Add(other_, word, later);
    service::Store(other_).DeleteRecord(1);
    std::filesystem::rename(Database(other_), Database(data_));
    EXPECT_EQ(Ids(data_), "2 3 ") << "a database from elsewhere";
    EXPECT_EQ(Found(data_, "new"), "");
    EXPECT_EQ(Found(data_, "away"), "2-2");
  }
}

TEST_F(DesignIndexTest, ListsARepetitionWhenTheFirstIsDeleted) {
  for (const char* word : {"same", "same", "other", "same"}) Add(data_, word);
  EXPECT_EQ(Ids(data_), "1 3 4 ");
  service::Store(data_).DeleteRecord(1);
  EXPECT_EQ(Ids(data_), "2 3 4 ");
  EXPECT_EQ(Found(data_, "same"), "2-4");
}

TEST_F(DesignIndexTest, LabelsAreInBackupsAndOutliveTheIndex) {
  for (const char* word : {"first", "second"}) Add(data_, word);
  EXPECT_EQ(Ids(data_), "1 2 ");
  EXPECT_TRUE(service::DesignStore(data_).Describe(1, "release 1", {}));
  EXPECT_FALSE(service::DesignStore(data_).Describe(7, "no such", {}));
  std::filesystem::remove(service::DesignStore::PathIn(data_));
  EXPECT_EQ(Ids(data_), "1 2 ");
  EXPECT_EQ(Label(data_, 1), "release 1");
  std::filesystem::create_directory(other_);
  std::filesystem::rename(service::MakeBackup(data_), Database(other_));
  EXPECT_EQ(Ids(other_), "1 2 ");
  EXPECT_EQ(Label(other_, 1), "release 1");
  EXPECT_EQ(Label(other_, 2), "none");
  service::Store(data_).DeleteRecord(1);
  service::Database database(Database(data_));
  EXPECT_FALSE(service::Statement(database, "SELECT 1 FROM labels").Step()) << "deleted with its record";
}

// In the earlier version the labels were in the index, and the database had no table for them.
TEST_F(DesignIndexTest, CarriesLabelsOverFromTheEarlierVersion) {
  Add(data_, "first", 1000);
  Add(data_, "second", 2000);
  service::Database(Database(data_)).Execute("DROP TABLE labels; PRAGMA user_version = 3");
  service::Database index(service::DesignStore::PathIn(data_));
  index.Execute(Contents(DATA "/first-index.sql").c_str());
  {
    const service::FolderLock used(data_);
    EXPECT_THROW(service::DesignStore{data_}, std::runtime_error) << "while the earlier version uses the folder";
  }
  EXPECT_EQ(Ids(data_), "1 2 ");
  EXPECT_EQ(Label(data_, 1), "release 1");
  EXPECT_EQ(service::DesignStore(data_).Find(1)->note, "as sold");
  EXPECT_EQ(Label(data_, 2), "none") << "the label of another record with this number";
  EXPECT_EQ(Found(data_, "second"), "2-2");
}

TEST_F(DesignIndexTest, StopsBetweenTwoDesignsAndContinuesLater) {
  for (const char* word : {"first", "second", "third"}) Add(data_, word);
  std::promise<void> begun, stopped;
  int designs = 0;
  {
    service::DesignIndexer indexer(
        data_,
        [&](const std::string&) {
          if (++designs > 1) return;
          begun.set_value();
          stopped.get_future().wait();
        },
        [] {});
    begun.get_future().wait();
    EXPECT_FALSE(indexer.Await(std::chrono::milliseconds(1)));
    indexer.Stop();
    EXPECT_FALSE(indexer.Await(std::chrono::hours(1))) << "nothing waits any more";
    stopped.set_value();
  }
  EXPECT_EQ(designs, 1);
  service::DesignIndexer indexer(
      data_, [](const std::string&) {}, [] {});
  EXPECT_TRUE(indexer.Await(std::chrono::hours(1)));
  EXPECT_EQ(service::DesignStore(data_).List("").size(), 3u);
}

TEST_F(DesignIndexTest, OnlyADeletionNeedsTheWholeIndex) {
  const std::int64_t id = Add(data_, "first");
  service::Store store(data_);
  service::Context context{store, service::Access(""), service::BodyLimit(1 << 20), "1"};
  context.awaitIndex = [](std::chrono::milliseconds) { return false; };
  const auto answer = [&](const char* method, const std::string& path, const char* body = "") {
    service::Request request;
    request.method = method;
    request.body = body;
    service::SetTarget(request, "/operator/designs" + path);
    try {
      return service::FindRoute(request).answer(context, request).status;
    } catch (const service::HttpError& error) {
      return error.status();
    }
  };
  const std::string design = '/' + std::to_string(id);
  EXPECT_EQ(answer("GET", ""), 200);
  EXPECT_EQ(answer("GET", design + "/elements"), 200);
  EXPECT_EQ(answer("POST", design + "/label", R"({"label":"L"})"), 200);
  EXPECT_EQ(answer("POST", design + "/delete"), 503);
  EXPECT_TRUE(store.FindRecord(id));
}

}  // namespace
