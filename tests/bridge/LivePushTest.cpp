// Varnix.LivePush: whose upload it is, under which name it goes, and what the service and the user are told.
#include "bridge/LivePush.h"

#include <filesystem>
#include <fstream>

#include "bridge/BridgeState.h"
#include "tests/bridge/BridgeTest.h"

namespace {

class LivePush : public BridgeTest {
 protected:
  std::string Save(const std::string& bytes = "<x/>") {
    std::ofstream(path_, std::ios::binary) << bytes;
    return path_;
  }
  /// The request `id` waits for `target`, and the script runs in the file `current`.
  void Wait(const std::string& id, const std::string& target, const std::string& current) {
    g_pendingGetSchemaCmdId = id;
    g_pendingTargetFileName = target;
    host.answers = {{"Get(FileName)", current}};
  }
  static std::string Call(const std::string& path) { return CallHandler(Do_LivePush, {path}); }
  static std::string Ingested(const std::string& name, const std::string& bytes = "<x/>") {
    return "POST http://s/api/live/ingest/K1?filename=" + name + " " + bytes;
  }

  const std::string path_ = folder_ + "/saved.xml";
};

TEST_F(LivePush, NamesTheUploadAndCompletesTheRequestThatItIsAbout) {
  const struct {
    std::string target, current, registered;
    std::string name;
    bool claims;
  } cases[] = {
      {"Sales", "Sales", "Shop", "Sales.fmp12.xml", true},
      {"Sales.fmp12", "sales", "Shop", "Sales.fmp12.fmp12.xml", true},
      {"sALES", "Sales.fmp12", "Shop", "sALES.fmp12.xml", true},
      {"Sales", "Sales.FMP12", "Shop", "Sales.FMP12.fmp12.xml", false},
      {"Sales", "Contacts", "Shop", "Contacts.fmp12.xml", false},
      {"Sales", "", "My Shop", "My%20Shop.fmp12.xml", false},
      {".fmp12", ".FMP12", "Shop", ".fmp12.fmp12.xml", true},
      {"", "Contacts", "My Shop", "My%20Shop.fmp12.xml", true},
      {"", "Contacts", "", "schema.fmp12.xml", true},
      {"Büro-1_2.~/", "Büro-1_2.~/", "", "B%C3%BCro-1_2.~%2F.fmp12.xml", true},
      {"Ä", "ä", "", "%C3%A4.fmp12.xml", false},
  };
  for (const auto& c : cases) {
    Wait("c1", c.target, c.current);
    g_registeredFileName = c.registered;
    EXPECT_EQ(Call(Save()), "OK");
    EXPECT_EQ(g_pendingGetSchemaCmdId, c.claims ? "" : "c1") << c.target;
    EXPECT_EQ(g_pendingTargetFileName, c.claims ? "" : c.target);
    EXPECT_TRUE(std::filesystem::exists(path_)) << "nothing is sent before the call returns";
    RunJobs();
    EXPECT_EQ(Sent(), c.claims ? (Texts{Ingested(c.name), Ended("c1")}) : Texts{Ingested(c.name)}) << c.target;
    EXPECT_FALSE(std::filesystem::exists(path_));
  }
  EXPECT_TRUE(notifications.empty());
}

TEST_F(LivePush, WithNothingWaitingItOnlyUploads) {
  const std::string bytes("\xFF\xFE<\0\r\n", 6);
  Wait("", "", "Contacts");
  EXPECT_EQ(Call(Save(bytes)), "OK");
  RunJobs();
  EXPECT_EQ(Sent(), Texts{Ingested("Registered.fmp12.xml", bytes)});
}

TEST_F(LivePush, AnEmptyPathChangesNothing) {
  Wait("c1", "", "");
  EXPECT_EQ(Call(""), "ERROR: posixPath is empty.");
  EXPECT_EQ(g_pendingGetSchemaCmdId, "c1");
  EXPECT_TRUE(jobs.empty());
}

TEST_F(LivePush, AFailureIsToldToTheUserAndTheServiceAndTheFileGoesAllTheSame) {
  const std::string missing = folder_ + "/missing", unreadable = folder_ + "/folder";
  std::filesystem::create_directory(unreadable);
  answers["/api/live/ingest"] = {true, "too \"large\"", "", 413};
  const std::pair<std::string, std::string> cases[] = {
      {missing, "ERROR: Could not read file: " + missing},
      {unreadable, "ERROR: Could not read file: " + unreadable},
      {Save(), "ERROR: HTTP 413 — too \"large\""},
  };
  for (const auto& [path, error] : cases) {
    notifications.clear();
    Wait("c1", "Sales", "Sales");
    EXPECT_EQ(Call(path), "OK");
    RunJobs();
    EXPECT_EQ(Sent().back(), Ended("c1", "Upload failed: " + error));
    EXPECT_EQ(notifications, Texts{"Varnix — Upload Failed: Could not send schema for \"Sales\": " + error});
    EXPECT_FALSE(std::filesystem::exists(path));
  }
}

TEST_F(LivePush, OfTwoCallsWithOnePathTheFirstCompletesTheRequest) {
  Wait("c1", "Sales", "Sales");
  Call(Save());
  Call(path_);
  RunJobs();
  EXPECT_EQ(Sent(), (Texts{Ingested("Sales.fmp12.xml"), Ended("c1")}));
  EXPECT_EQ(notifications.size(), 1u) << "the second finds no file";
}

}  // namespace
