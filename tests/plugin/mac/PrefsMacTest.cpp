// The settings of macOS in GNUstep's user defaults.
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "plugin/core/PrefsFixture.h"
#include "plugin/mac/standin/StandIn.h"

/// GNUstep's way to start over with other arguments and another environment than those of the process.
extern "C" void GSInitializeProcess(int argc, char** argv, char** environment);

// GNUstep takes the home from the password file. Only its configuration file can change that, and the user's own one,
// disabled here, could override it.
void MoveHome(const std::filesystem::path& home) {
  const std::filesystem::path configuration = home / "GNUstep.conf";
  std::ofstream(configuration) << "GNUSTEP_USER_CONFIG_FILE=none\n"
                               << "GNUSTEP_USER_DEFAULTS_DIR=" << (home / "defaults").string() << '\n';
  setenv("GNUSTEP_CONFIG_FILE", configuration.c_str(), 1);
  char program[] = "host";
  char* arguments[] = {program, nullptr};
  GSInitializeProcess(1, arguments, environ);
}

void InAnotherRun(const std::function<void()>& body) { InNewProcess(body); }

namespace {

TEST_F(PrefsTest, ADefaultOfAnotherTypeLoadsAsAnEmptyText) {
  std::filesystem::create_directory(home_ / "defaults");
  EXPECT_TRUE(geteuid() != 0 || chown((home_ / "defaults").c_str(), kOrdinaryUser, kOrdinaryUser) == 0);
  for (const char* value : {"<array><string>a</string></array>", "<dict/>", "<data>YQ==</data>"}) {
    std::ofstream(home_ / "defaults" / "host.plist")
        << "<?xml version=\"1.0\"?><plist version=\"1.0\"><dict><key>" << Prefs::kLicenseKeyKey << "</key>" << value
        << "<key>" << Prefs::kBaseUrlKey << "</key><string>url</string></dict></plist>";
    ExpectStored("url", "");
  }
}

TEST_F(PrefsTest, NothingStaysInMemory) {
  InNewProcess([] {
    const auto saveAndLoad = [] {
      Prefs::SaveLicenseKey("key");
      Prefs::LoadLicenseKey();
    };
    EXPECT_EQ(StandIn::ObjectsLeftBy(saveAndLoad), 0);
  });
}

}  // namespace
