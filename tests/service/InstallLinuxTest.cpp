// The service as a unit of systemd.
#include "service/InstallTest.h"

namespace {

TEST_F(InstallTest, MakesTheSystemStartTheService) {
  const std::string unit = folder_ + "/systemd/user/varnix-service.service";
  MakeTool("systemctl");
  EXPECT_EQ(Run({"install", "--data", folder_ + "/a $b%"}).status, 0);
  EXPECT_NE(Contents(unit).find(" \"--data\" \"" + folder_ + "/a $$b%%\"\nStandardOutput=null\n"), std::string::npos);
  EXPECT_EQ(Run({"uninstall"}).status, 0);
  EXPECT_FALSE(std::filesystem::exists(unit));
  EXPECT_EQ(Run({"uninstall"}).errors, "varnix-service: the service is not installed\n");
  EXPECT_EQ(Calls(),
            "--user daemon-reload\n--user enable varnix-service.service\n--user restart varnix-service.service\n"
            "--user disable --now varnix-service.service\n");
  MakeTool("systemctl", "exit 1");
  EXPECT_EQ(Run({"install"}).errors,
            "varnix-service: systemctl --user daemon-reload failed; " + unit + " stays for the next login\n");
  EXPECT_EQ(Run({"uninstall"}).errors,
            "varnix-service: systemctl --user disable --now varnix-service.service failed; nothing was removed, so try "
            "again\n");
  EXPECT_TRUE(std::filesystem::exists(unit));
}

}  // namespace
