// Varnix.LivePush: whose upload it is, under which name it goes, and what the service and the user are told.
#include "bridge/LivePush.h"

#include <filesystem>
#include <fstream>

#include "core/State.h"
#include "net/JsonWriter.h"
#include "plugin/bridge/BridgeTest.h"

namespace {

class LivePush : public BridgeTest {
 protected:
  std::string Save() {
    std::ofstream(path_, std::ios::binary) << kBytes;
    return path_;
  }
  /// The request `id` waits for `target`, and the script runs in the file `current`.
  void Wait(const std::string& id, const std::string& target, const std::string& current) {
    g_pendingGetSchemaCmdId = id;
    g_pendingTargetFileName = target;
    host.answers = {{"Get(FileName)", current}};
  }
  static std::string Call(const std::string& path) { return CallHandler(Do_LivePush, {path}); }

  const std::string kBytes{"\xFF\xFE<\0\r\n", 6};
  const std::string path_ = folder_ + "/saved.xml";
};

TEST_F(LivePush, NamesTheUploadAndCompletesTheRequestThatItIsAbout) {
  const struct {
    std::string id, target, current, registered;
    std::string name;
    bool claims;
  } cases[] = {
      {"c1", "Sales", "Sales", "Shop", "Sales.fmp12.xml", true},
      {"c1", "Sales.fmp12", "sales", "Shop", "Sales.fmp12.fmp12.xml", true},
      {"c1", "sALES", "Sales.fmp12", "Shop", "sALES.fmp12.xml", true},
      {"c1", "Sales", "Sales.FMP12", "Shop", "Sales.FMP12.fmp12.xml", false},
      {"c1", "Sales", "Contacts", "Shop", "Contacts.fmp12.xml", false},
      {"c1", "Sales", "", "My Shop", "My%20Shop.fmp12.xml", false},
      {"c1", ".fmp12", ".FMP12", "Shop", ".fmp12.fmp12.xml", true},
      {"c1", "", "Contacts", "", "schema.fmp12.xml", true},
      {"c1", "Büro-1_2.~/", "Büro-1_2.~/", "", "B%C3%BCro-1_2.~%2F.fmp12.xml", true},
      {"", "", "Contacts", "Shop", "Shop.fmp12.xml", false},
  };
  for (const auto& [id, target, current, registered, name, claims] : cases) {
    Wait(id, target, current);
    g_registeredFileName = registered;
    EXPECT_EQ(Call(Save()), "OK");
    EXPECT_EQ(g_pendingGetSchemaCmdId, claims ? "" : id) << target;
    EXPECT_EQ(g_pendingTargetFileName, claims ? "" : target);
    EXPECT_TRUE(std::filesystem::exists(path_)) << "nothing is sent before the call returns";
    RunJobs();
    const std::string ingested = "POST http://s/api/live/ingest/K1?filename=" + name + " " + kBytes;
    EXPECT_EQ(Sent(), claims ? (Texts{ingested, Ended("c1")}) : Texts{ingested}) << target;
    EXPECT_FALSE(std::filesystem::exists(path_));
  }
  EXPECT_TRUE(notifications.empty());
}

TEST_F(LivePush, AFailureIsToldToTheUserAndTheServiceAndTheFileGoesAllTheSame) {
  g_licenseKey = "K-1";  // not part of any path here
  const std::string missing = folder_ + "/missing", unreadable = folder_ + "/folder";
  std::filesystem::create_directory(unreadable);
  answers["/api/live/ingest"] = {true, "too \"large\"", "", 413};
  const std::pair<std::string, std::string> cases[] = {{missing, "ERROR: Could not read file: " + missing},
                                                       {unreadable, "ERROR: Could not read file: " + unreadable},
                                                       {Save(), "ERROR: HTTP 413 — too \"large\""}};
  for (const auto& [path, error] : cases) {
    notifications.clear();
    Wait("c1", "Sales", "Sales");
    EXPECT_EQ(Call(path), "OK");
    RunJobs();
    EXPECT_EQ(requests.back().body, JsonWriter()
                                        .Text("licenseKey", "K-1")
                                        .Text("status", "failed")
                                        .Text("error", "Upload failed: " + error)
                                        .Finish());
    EXPECT_EQ(notifications, Texts{"Varnix — Upload Failed: Could not send schema for \"Sales\": " + error});
    EXPECT_FALSE(std::filesystem::exists(path));
  }
}

TEST_F(LivePush, TheNotificationOfAFailureDoesNotShowTheAccountKey) {
  g_licenseKey = "K+%1";
  const std::pair<const char*, const char*> answered[] = {{"POST /K+%1?x", "POST /[account key]?x"},
                                                          {"%4b+%251, K%2B%1", "[account key], [account key]"},
                                                          {"K+%2 K+ %4", "K+%2 K+ %4"}};
  for (const auto& [answer, shown] : answered) {
    answers["/api/live/ingest"] = {true, answer, "", 404};
    notifications.clear();
    Wait("c1", "Sales", "Sales");
    Call(Save());
    RunJobs();
    const std::string message = "Varnix — Upload Failed: Could not send schema for \"Sales\": ERROR: HTTP 404 — ";
    EXPECT_EQ(notifications, Texts{message + shown});
  }
}

TEST_F(LivePush, AnUploadThatNeverRunsStillTakesItsFileWithIt) {
  EXPECT_EQ(Call(Save()), "OK");
  jobs.clear();
  EXPECT_FALSE(std::filesystem::exists(path_));
}

TEST_F(LivePush, OfTwoCallsWithOnePathTheFirstCompletesTheRequest) {
  Wait("c1", "Sales", "Sales");
  Call(Save());
  Call(path_);
  RunJobs();
  EXPECT_EQ(Sent(),
            (Texts{std::string("POST http://s/api/live/ingest/K1?filename=Sales.fmp12.xml ") + kBytes, Ended("c1")}));
  EXPECT_EQ(notifications.size(), 1u) << "the second finds no file";
}

}  // namespace
