// Varnix.LivePush: which request an upload answers, its name, and the reports to the service and the user.
#include "bridge/LivePush.h"

#include <filesystem>
#include <fstream>

#include "plugin/bridge/BridgeTest.h"

namespace {

class LivePush : public BridgeTest {
 protected:
  std::string Save() const {
    std::ofstream(path_, std::ios::binary) << kBytes;
    return path_;
  }
  /// The request c1 waits for `target`, "" when none does, and the script runs in the file `current`.
  void Wait(const std::string& target, const std::string& current) {
    host.answers.clear();
    if (!target.empty()) CarryOut("GET_SCHEMA", R"(,"fileName":")" + target + '"');
    Activate(current);
  }
  static std::string Call(const std::string& path) { return CallHandler(Do_LivePush, {path}); }

  const std::string kBytes{"\xFF\xFE<\0\r\n", 6};
  const std::string path_ = folder_ + "/saved.xml";
};

TEST_F(LivePush, NamesTheUploadAndCompletesTheRequestThatItIsAbout) {
  const std::tuple<std::string, std::string, std::string, std::string, bool> cases[] = {
      {"", "Contacts", "Shop", "Shop.fmp12.xml", false},
      {"", "Contacts", "", "schema.fmp12.xml", false},
      {"Sales", "Sales", "Shop", "Sales.fmp12.xml", true},
      {"Sales.fmp12", "sales", "Shop", "Sales.fmp12.fmp12.xml", true},
      {"sALES", "Sales.fmp12", "Shop", "sALES.fmp12.xml", true},
      {"Sales", "Sales.FMP12", "Shop", "Sales.FMP12.fmp12.xml", false},
      {"Sales", "Contacts", "Shop", "Contacts.fmp12.xml", false},
      {"Sales", "", "My Shop", "My%20Shop.fmp12.xml", false},
      {".fmp12", ".FMP12", "Shop", ".fmp12.fmp12.xml", true},
      {"Büro-1_2.~/", "Büro-1_2.~/", "", "B%C3%BCro-1_2.~%2F.fmp12.xml", true},
  };
  for (const auto& [target, current, registered, name, answers] : cases) {
    Wait(target, current);
    g_registeredFileName = registered;
    EXPECT_EQ(Call(Save()), "OK");
    EXPECT_EQ(SchemaRequestState(), answers || target.empty() ? "" : "c1 " + target + " armed");
    EXPECT_TRUE(std::filesystem::exists(path_)) << "nothing is sent before the call returns";
    Texts expected = {"POST http://s/api/live/ingest/K1?filename=" + name + " " + kBytes};
    if (answers) expected.push_back(Ended("c1"));
    RunJobs();
    EXPECT_EQ(Effects(), expected) << target;
    EXPECT_FALSE(std::filesystem::exists(path_));
  }
}

TEST_F(LivePush, AFailureIsReportedWithoutTheKeyInTheNotificationAndDeletesTheFile) {
  const std::string missing = folder_ + "/missing", unreadable = folder_ + "/folder", key = "[account key]";
  std::filesystem::create_directory(unreadable);
  g_licenseKey = "K+%25";
  const std::tuple<std::string, std::string, std::string> cases[] = {
      {missing, "Could not read file: " + missing, "Could not read file: " + missing},
      {unreadable, "Could not read file: " + unreadable, "Could not read file: " + unreadable},
      {path_, "HTTP 413 — no \"room\"", "HTTP 413 — no \"room\""},
      {path_, "HTTP 413 — POST /K+%25?x", "HTTP 413 — POST /" + key + "?x"},
      {path_, "HTTP 413 — %4b+%2525,K%2B%2525", "HTTP 413 — " + key + "," + key},
      {path_, "HTTP 413 — K+%2 K+ %4", "HTTP 413 — K+%2 K+ %4"},
  };
  for (const auto& [path, error, shown] : cases) {
    answers["/api/live/ingest"] = {true, error.substr(std::string("HTTP 413 — ").size()), "", 413};
    Wait("Sales", "Sales");
    Save();
    EXPECT_EQ(Call(path), "OK");
    RunJobs();
    const Texts done = Effects();
    EXPECT_EQ(done.end()[-2], "notify Varnix — Upload Failed: Could not send schema for \"Sales\": ERROR: " + shown);
    EXPECT_EQ(done.end()[-1], Failed("c1", "Upload failed: ERROR: " + error));
    EXPECT_FALSE(std::filesystem::exists(path));
  }
}

TEST_F(LivePush, AnUploadThatNeverRunsStillDeletesItsFile) {
  EXPECT_EQ(Call(Save()), "OK");
  jobs.clear();
  EXPECT_FALSE(std::filesystem::exists(path_));
}

TEST_F(LivePush, OfTwoCallsWithOnePathTheFirstCompletesTheRequest) {
  Wait("Sales", "Sales");
  onRequest = [&] {
    const bool isUpload = requests.back().url.starts_with("http://s/api/live/");
    EXPECT_EQ(std::filesystem::exists(path_), isUpload) << "it is gone before the completion";
  };
  Call(Save());
  Call(path_);
  RunJobs();
  const Texts done = Effects();
  ASSERT_EQ(done.size(), 3u);
  EXPECT_EQ(done[0], "POST http://s/api/live/ingest/K1?filename=Sales.fmp12.xml " + kBytes);
  EXPECT_EQ(done[1], Ended("c1"));
  EXPECT_TRUE(done[2].starts_with("notify ")) << "the second finds no file";
}

}  // namespace
