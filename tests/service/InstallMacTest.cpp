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

// A launchctl that ends the service only after the second request, as the system does with one that takes its time.
constexpr char kLaunchd[] =
    "cd \"$HOME\"\n"
    "case $1 in\n"
    "  print) [ -e loaded ] ;;\n"
    "  bootstrap) [ ! -e loaded ] && touch loaded ;;\n"
    "  bootout) [ -e ending ] && rm loaded ending || { touch ending; exit 36; } ;;\n"
    "esac";

TEST_F(AgentTest, MakesTheSystemStartTheService) {
  const std::string agent = folder_ + "/Library/LaunchAgents/com.varnix.service.plist";
  const std::string domain = "gui/" + std::to_string(getuid());
  MakeTool("launchctl", kLaunchd);
  EXPECT_EQ(Run({"install", "--data", folder_ + "/a <b&"}).status, 0);
  EXPECT_NE(Contents(agent).find("<string>--data</string>\n    <string>" + folder_ + "/a &lt;b&amp;</string>\n"),
            std::string::npos);
  EXPECT_EQ(RunProcess({"/usr/bin/plutil", "-lint", agent}).status, 0);
  EXPECT_EQ(Run({"install"}).status, 0);
  EXPECT_EQ(Run({"uninstall"}).status, 0);
  EXPECT_FALSE(std::filesystem::exists(agent));
  EXPECT_EQ(Run({"uninstall"}).errors, "varnix-service: the service is not installed\n");
  const std::string load = "bootstrap " + domain + ' ' + agent + '\n';
  const std::string target = domain + "/com.varnix.service\n";
  const std::string stop =
      "print " + target + "bootout " + target + "print " + target + "bootout " + target + "print " + target;
  const std::string isLoaded = "print " + target;
  EXPECT_EQ(Calls(), isLoaded + load + stop + load + stop + isLoaded);

  EXPECT_EQ(Run({"install"}).status, 0);
  std::filesystem::remove(agent);
  EXPECT_EQ(Run({"uninstall"}).status, 0) << "launchd still has it";
  EXPECT_FALSE(std::filesystem::exists(folder_ + "/loaded"));
  MakeTool("launchctl", "exit 1");
  EXPECT_EQ(Run({"install"}).errors, "varnix-service: launchctl bootstrap " + domain + ' ' + agent + " failed; " +
                                         agent + " stays for the next login\n");
}

}  // namespace
