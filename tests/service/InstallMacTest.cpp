// The service as an agent of launchd.
#include <unistd.h>

#include "service/InstallTest.h"

namespace {

class AgentTest : public InstallTest {
 protected:
  AgentTest() { setenv("HOME", folder_.c_str(), 1); }
  ~AgentTest() override { setenv("HOME", home_.c_str(), 1); }

 private:
  const std::string home_ = std::getenv("HOME");
};

TEST_F(AgentTest, LetsTheSystemStartTheService) {
  const std::string agent = folder_ + "/Library/LaunchAgents/com.varnix.service.plist";
  const std::string domain = "gui/" + std::to_string(getuid());
  MakeTool("launchctl");
  EXPECT_EQ(Run({"install", "--data", folder_ + "/a <b&"}).status, 0);
  EXPECT_NE(Contents(agent).find("<string>--data</string>\n    <string>" + folder_ + "/a &lt;b&amp;</string>\n"),
            std::string::npos);
  EXPECT_EQ(RunProcess({"/usr/bin/plutil", "-lint", agent}).status, 0);
  EXPECT_EQ(Run({"uninstall"}).status, 0);
  EXPECT_FALSE(std::filesystem::exists(agent));
  EXPECT_EQ(Run({"uninstall"}).errors, "varnix-service: the service is not installed\n");
  EXPECT_EQ(Calls(), "bootstrap " + domain + ' ' + agent + "\nbootout " + domain + "/com.varnix.service\n");
  MakeTool("launchctl", "exit 1");
  EXPECT_EQ(Run({"install"}).errors, "varnix-service: launchctl bootstrap " + domain + ' ' + agent + " failed; " +
                                         agent + " stays for the next login\n");
}

}  // namespace
