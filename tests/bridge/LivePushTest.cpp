// Varnix.LivePush: whose upload it is, under which name it goes, and what the service and the user are told.
#include "bridge/LivePush.h"

#include <filesystem>
#include <fstream>

#include "bridge/BridgeState.h"
#include "tests/bridge/BridgeTest.h"

namespace {

class LivePush : public BridgeTest {
 protected:
  std::string Save(const std::string& bytes = "<FMSaveAsXML/>") {
    const std::string path = folder_ + "/saved.xml";
    std::ofstream(path, std::ios::binary) << bytes;
    return path;
  }
  std::string Call(const std::string& path) { return CallHandler(Do_LivePush, {path}); }
  static std::string Ingested(const std::string& name, const std::string& bytes = "<FMSaveAsXML/>") {
    return "POST /api/live/ingest/K1?filename=" + name + " " + bytes;
  }
};

TEST_F(LivePush, NamesTheUploadAndCompletesTheRequestThatItIsAbout) {
  struct Case {
    std::string target, current, registered;
    std::string name;
    bool claims;
  };
  const Case cases[] = {
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
    g_pendingGetSchemaCmdId = "c1";
    g_pendingTargetFileName = c.target;
    g_registeredFileName = c.registered;
    host.answers = {{"Get(FileName)", c.current}};
    const std::string path = Save();
    EXPECT_EQ(Call(path), "OK");
    EXPECT_EQ(g_pendingGetSchemaCmdId, c.claims ? "" : "c1") << c.target;
    EXPECT_EQ(g_pendingTargetFileName, c.claims ? "" : c.target);
    EXPECT_TRUE(std::filesystem::exists(path)) << "nothing is sent before the call returns";
    RunJobs();
    EXPECT_EQ(Sent(), c.claims ? (Texts{Ingested(c.name), Ended("c1")}) : Texts{Ingested(c.name)}) << c.target;
    EXPECT_FALSE(std::filesystem::exists(path));
  }
  EXPECT_TRUE(notifications.empty());
}

TEST_F(LivePush, WithNothingWaitingItOnlyUploads) {
  const std::string bytes("\xFF\xFE<\0\r\n", 6);
  host.answers = {{"Get(FileName)", "Contacts"}};
  EXPECT_EQ(Call(Save(bytes)), "OK");
  RunJobs();
  EXPECT_EQ(Sent(), Texts{Ingested("Registered.fmp12.xml", bytes)});
  EXPECT_NE(server.Requests()[0].find("\r\nContent-Type: application/octet-stream\r\n"), std::string::npos);
}

TEST_F(LivePush, AnEmptyPathChangesNothing) {
  g_pendingGetSchemaCmdId = "c1";
  EXPECT_EQ(Call(""), "ERROR: posixPath is empty.");
  EXPECT_EQ(CallHandler(Do_LivePush), "ERROR: posixPath is empty.");
  EXPECT_EQ(g_pendingGetSchemaCmdId, "c1");
  EXPECT_EQ(JobCount(), 0u);
}

TEST_F(LivePush, AFailureIsToldToTheUserAndTheServiceAndTheFileGoesAllTheSame) {
  const std::string unreadable = folder_ + "/folder";
  std::filesystem::create_directory(unreadable);
  const struct {
    std::string path;
    std::string error;
  } cases[] = {
      {folder_ + "/missing.xml", "ERROR: Could not read file: " + folder_ + "/missing.xml"},
      {unreadable, "ERROR: Could not read file: " + unreadable},
      {folder_ + "/saved.xml", "ERROR: HTTP 413 — too \"large\""},
  };
  answers["POST /api/live/ingest"] = {413, "too \"large\"", ""};
  Save();
  for (const auto& c : cases) {
    notifications.clear();
    g_pendingGetSchemaCmdId = "c1";
    g_pendingTargetFileName = "Sales";
    host.answers = {{"Get(FileName)", "Sales"}};
    EXPECT_EQ(Call(c.path), "OK");
    RunJobs();
    EXPECT_EQ(Sent().back(), Ended("c1", "Upload failed: " + c.error));
    EXPECT_EQ(notifications, Texts{"Varnix — Upload Failed: Could not send schema for \"Sales\": " + c.error});
    EXPECT_FALSE(std::filesystem::exists(c.path));
  }
}

TEST_F(LivePush, OfTwoCallsWithOnePathTheFirstCompletesTheRequest) {
  g_pendingGetSchemaCmdId = "c1";
  g_pendingTargetFileName = "Sales";
  host.answers = {{"Get(FileName)", "Sales"}};
  const std::string path = Save();
  EXPECT_EQ(Call(path), "OK");
  EXPECT_EQ(Call(path), "OK");
  g_baseUrl = "http://elsewhere.invalid";
  RunJobs();
  EXPECT_EQ(Sent(), (Texts{Ingested("Sales.fmp12.xml"), Ended("c1")})) << "to the account of the time of the call";
  EXPECT_EQ(notifications.size(), 1u) << "the second finds no file";
}

}  // namespace
