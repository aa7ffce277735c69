// A user with an empty home folder for each test of the settings.
#pragma once

#include <unistd.h>

#include <filesystem>
#include <functional>
#include <string>

#include "core/Prefs.h"
#include "plugin/core/NewProcess.h"
#include "support/FolderTest.h"

/// Makes the platform's store, in this process and its children, a folder below `home`. Defined by each test program.
void MoveHome(const std::filesystem::path& home);

/// Carries out `body` as in another run of FileMaker. Defined by each test program.
void InAnotherRun(const std::function<void()>& body);

class PrefsTest : public FolderTest {
 protected:
  PrefsTest() {
    EXPECT_TRUE(geteuid() != 0 || chown(home_.c_str(), kOrdinaryUser, kOrdinaryUser) == 0);
    MoveHome(home_);
  }

  static void Save(const std::string& url, const std::string& key) {
    InAnotherRun([&] {
      Prefs::SaveBaseUrl(url);
      Prefs::SaveLicenseKey(key);
    });
  }
  static void ExpectStored(const std::string& url, const std::string& key) {
    InAnotherRun([&] {
      EXPECT_EQ(Prefs::LoadBaseUrl(), url);
      EXPECT_EQ(Prefs::LoadLicenseKey(), key);
    });
  }

  const std::filesystem::path home_ = folder_;
};
