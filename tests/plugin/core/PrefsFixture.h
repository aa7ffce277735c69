// A user with an empty home folder for each test of the settings.
#pragma once

#include <unistd.h>

#include <filesystem>
#include <functional>
#include <string>

#include "core/Prefs.h"
#include "plugin/core/NewProcess.h"
#include "support/FolderTest.h"

/// Moves the platform's store, for this process and its children, to a folder below `home`. Each test program defines
/// it.
void MoveHome(const std::filesystem::path& home);

/// Runs `body` as in another run of FileMaker. Each test program defines it.
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
