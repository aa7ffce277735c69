// Varnix.LivePush: which request an upload answers, its name, and the reports to the service and the user.
#include "bridge/LivePush.h"

#include <filesystem>
#include <fstream>

#include "plugin/bridge/BridgeTest.h"
#include "support/Rows.h"

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
  const std::string upload = "POST http://s/api/live/ingest/K1?filename=";
  ExpectRows(DATA "/uploads.txt", [&](const auto& row) {
    const Texts columns = ColumnsOf(row, 3);
    Wait(columns[0], columns[1]);
    g_registeredFileName = columns[2];
    EXPECT_EQ(Call(Save()), "OK");
    const std::string waiting = SchemaRequestState();
    EXPECT_TRUE(std::filesystem::exists(path_)) << "nothing is sent before the call returns";
    RunJobs();
    EXPECT_FALSE(std::filesystem::exists(path_));
    const std::string sent = Replaced(Lines(Effects()), Ended("c1"), "completed");
    return Replaced(Replaced(sent, upload, ""), " " + kBytes, "") + waiting;
  });
}

TEST_F(LivePush, AFailureIsReportedWithoutTheKeyInTheNotificationAndDeletesTheFile) {
  std::filesystem::create_directory(folder_ + "/folder");
  g_licenseKey = "K+%25";
  ExpectRows(DATA "/failed-uploads.txt", [this](const auto& row) {
    const Texts columns = ColumnsOf(row, 2);
    const std::string path = folder_ + "/" + columns[0];
    answers["/api/live/ingest"] = {true, columns[1], "", 413};
    Wait("Sales", "Sales");
    Save();
    EXPECT_EQ(Call(path), "OK");
    RunJobs();
    EXPECT_FALSE(std::filesystem::exists(path));
    const Texts done = Effects();
    return Replaced(Lines({done.end() - 2, done.end()}), folder_, "{folder}");
  });
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
