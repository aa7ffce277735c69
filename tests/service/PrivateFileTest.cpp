// Small files of the service when it is killed while it writes them.
#include "system/PrivateFile.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <csignal>
#include <filesystem>
#include <fstream>

#include "http/Agents.h"
#include "support/FolderTest.h"

namespace {

class PrivateFile : public FolderTest {
 protected:
  // Every write of a byte to a file ends the process.
  static void EndAtFirstWrite() {
    const rlimit nothing{0, RLIM_INFINITY};
    setrlimit(RLIMIT_FSIZE, &nothing);
  }
};

TEST_F(PrivateFile, IsWholeOrAsBeforeWhenItsWriterIsKilled) {
  const auto killed = testing::KilledBySignal(SIGXFSZ);
  EXPECT_EXIT((EndAtFirstWrite(), service::ReadOrMakeKey(folder_)), killed, "");
  EXPECT_EQ(service::ReadKey(folder_), std::nullopt);
  const std::string key = service::ReadOrMakeKey(folder_);
  EXPECT_GE(key.size(), 20u);
  EXPECT_EQ(service::ReadOrMakeKey(folder_), key);
  service::KeepAgentMode(folder_, service::AgentMode::kOff);
  EXPECT_EXIT((EndAtFirstWrite(), service::KeepAgentMode(folder_, service::AgentMode::kFull)), killed, "");
  EXPECT_EQ(service::KeptAgentMode(folder_), service::AgentMode::kOff);
  service::KeepAgentMode(folder_, service::AgentMode::kReadOnly);
  EXPECT_EQ(service::KeptAgentMode(folder_), service::AgentMode::kReadOnly);
  for (const auto& entry : std::filesystem::directory_iterator(folder_)) {
    struct stat status {};
    stat(entry.path().c_str(), &status);
    EXPECT_EQ(status.st_mode & 0777, 0600u) << entry.path();
    EXPECT_NE(entry.path().extension(), ".new");
  }
}

TEST_F(PrivateFile, IsReplacedWhenAnEarlierVersionLeftItWithoutKey) {
  std::ofstream(folder_ + "/key").close();
  EXPECT_GE(service::ReadOrMakeKey(folder_).size(), 20u);
  std::ofstream(folder_ + "/key") << "\nof the user";
  EXPECT_THROW(service::ReadOrMakeKey(folder_), std::runtime_error);
}

}  // namespace
