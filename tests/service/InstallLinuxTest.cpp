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

TEST_F(InstallTest, RefusesAServiceThatCouldNotStartOrHadAnotherKey) {
  MakeTool("systemctl");
  const std::string key = folder_ + "/key";
  const auto install = [&](const std::vector<std::string>& options) {
    std::vector<std::string> arguments{"install", "--data", folder_};
    arguments.insert(arguments.end(), options.begin(), options.end());
    const std::string errors = Run(arguments).errors;
    return errors.substr(0, errors.find('\n'));
  };
  const std::string name = "varnix-service: ";
  EXPECT_EQ(install({"--listen=nonsense"}), name + "--listen takes ADDR:PORT, not nonsense");
  EXPECT_EQ(install({"--no-key", "--listen=0.0.0.0:0"}),
            name + "to be reached from other machines, the service needs a key");
  setenv("VARNIX_KEY", "K1", 1);
  EXPECT_EQ(install({"--no-key"}), name + "--no-key and a key cannot be combined");
  EXPECT_EQ(install({}), name + "the installed service does not see $VARNIX_KEY: write the key to " + key +
                             ", or unset the variable");
  EXPECT_EQ(Calls(), "");
  EXPECT_FALSE(std::filesystem::exists(folder_ + "/systemd"));
  std::ofstream(key) << "K1\n";
  EXPECT_EQ(install({}), "");
  unsetenv("VARNIX_KEY");
  std::ofstream(key) << "a b\n";
  EXPECT_EQ(install({}),
            name + "a key consists of letters, digits and - . _ ~, because it is sent in addresses unescaped");
}

}  // namespace
