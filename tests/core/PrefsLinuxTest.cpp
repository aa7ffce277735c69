// Where and how Linux keeps the settings, and that no fault costs a stored value or a wait.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <cerrno>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>

#include "core/Prefs.h"
#include "host/FileDescriptor.h"
#include "tests/core/PrefsFixture.h"
#include "tests/core/SystemCalls.h"

namespace fs = std::filesystem;

void MoveHome(const fs::path& home) {
  setenv("HOME", home.c_str(), 1);
  unsetenv("XDG_CONFIG_HOME");
}

namespace {

class PrefsLinuxTest : public PrefsTest {
 protected:
  PrefsLinuxTest() : directory_(home_ / ".config" / "varnix"), file_(directory_ / "preferences") {}

  void MakeDirectory() const {
    fs::create_directories(directory_);
    GiveToUser(directory_);
  }
  void Write(const std::string& bytes) const {
    MakeDirectory();
    std::ofstream(file_, std::ios::binary) << bytes;
  }
  std::string Bytes() const {
    std::ifstream stream(file_, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
  }
  std::ptrdiff_t FilesInDirectory() const { return std::distance(fs::directory_iterator(directory_), {}); }

  const fs::path directory_;
  const fs::path file_;
};

fs::perms Permissions(const fs::path& path) { return fs::status(path).permissions(); }

TEST_F(PrefsLinuxTest, WritesOneLineForEachSettingIntoAPrivateFile) {
  umask(0);
  Save("https://varnix.example", "back\\slash\nline \xF0\x9F\x98\x80 a=b");
  EXPECT_EQ(Bytes(),
            "com.varnix.plugin.licenseKey=back\\\\slash\\nline \xF0\x9F\x98\x80 a=b\n"
            "com.varnix.plugin.baseUrl=https://varnix.example\n");
  EXPECT_EQ(Permissions(file_), fs::perms(0600));
  EXPECT_EQ(Permissions(directory_), fs::perms(0700));
  EXPECT_EQ(FilesInDirectory(), 1);
  EXPECT_EQ(LoadKey(), "back\\slash\nline \xF0\x9F\x98\x80 a=b");
}

TEST_F(PrefsLinuxTest, FindsTheUsersDirectoryIfThereIsAny) {
  const std::string home = home_;
  const std::string xdg = home + "/made/when/needed";
  const struct {
    const char* xdgConfigHome;
    const char* home;
    std::string passwdHome;
    std::string expected;
  } cases[] = {
      {xdg.c_str(), home.c_str(), "", xdg},
      {xdg.c_str(), nullptr, "", xdg},
      {"", home.c_str(), "", home + "/.config"},
      {"relative", home.c_str(), "", home + "/.config"},
      {nullptr, nullptr, home + "/account", home + "/account/.config"},
      {"relative", "relative", home + "/account2", home + "/account2/.config"},
      {nullptr, nullptr, "relative", ""},
  };
  for (const auto& c : cases) {
    const std::string loaded = InNewProcess([&] {
      EXPECT_EQ(chdir(home_.c_str()), 0);
      c.xdgConfigHome == nullptr ? unsetenv("XDG_CONFIG_HOME") : setenv("XDG_CONFIG_HOME", c.xdgConfigHome, 1);
      c.home == nullptr ? unsetenv("HOME") : setenv("HOME", c.home, 1);
      system_calls::passwdHome = c.passwdHome;
      Prefs::SaveLicenseKey("key");
      return Prefs::LoadLicenseKey();
    });
    EXPECT_EQ(loaded, c.expected.empty() ? "" : "key");
    EXPECT_TRUE(c.expected.empty() || fs::remove(c.expected + "/varnix/preferences")) << c.expected;
  }
  EXPECT_FALSE(fs::exists(home_ / "relative"));
}

TEST_F(PrefsLinuxTest, FlushesTheNewFileBeforeItTakesTheOldOnesPlace) {
  const std::string steps = InNewProcess([&] {
    std::string log;
    system_calls::beforeFsync = [&](int file) {
      struct stat info;
      fstat(file, &info);
      log += S_ISDIR(info.st_mode) ? "flush directory; " : "flush " + std::to_string(info.st_size) + " bytes; ";
      return 0;
    };
    system_calls::beforeRename = [&](const std::string& from, const std::string& to) {
      log += fs::path(from).parent_path() == directory_ && to == file_ ? "rename; " : "rename elsewhere; ";
      return 0;
    };
    Prefs::SaveLicenseKey("0123456789");
    return log;
  });
  EXPECT_EQ(steps, "flush 40 bytes; rename; flush directory; ");
}

TEST_F(PrefsLinuxTest, ASaveThatFailsLeavesTheOldFileAlone) {
  Save("url", "key");
  const std::string old = Bytes();
  const std::function<void()> faults[] = {
      [] { system_calls::beforeFsync = [](int) { return EIO; }; },
      [] { system_calls::beforeRename = [](auto&, auto&) { return EIO; }; },
      [] {
        const rlimit half = {2000, 2000};  // the disk is full in the middle of the file
        setrlimit(RLIMIT_FSIZE, &half);
        signal(SIGXFSZ, SIG_IGN);
      },
      [&] { fs::permissions(directory_, fs::perms(0500)); },
  };
  for (const auto& fault : faults) {
    InNewProcess([&] {
      fault();
      Prefs::SaveBaseUrl(std::string(4000, 'u'));
      Prefs::SaveLicenseKey(std::string(4000, 'k'));
      EXPECT_EQ(Prefs::LoadBaseUrl(), "url");
      return "";
    });
    fs::permissions(directory_, fs::perms(0700));
    EXPECT_EQ(Bytes(), old);
    EXPECT_EQ(FilesInDirectory(), 1);
  }
}

TEST_F(PrefsLinuxTest, WhatCannotBeReadIsNotReplaced) {
  const std::function<void()> obstacles[] = {
      [&] { mkfifo(file_.c_str(), 0666); },
      [&] { fs::create_directory(file_); },
      [&] { fs::create_symlink("/dev/zero", file_); },
      [&] { fs::create_symlink(file_, file_); },
      [&] { Write("com.varnix.plugin.licenseKey=secret\n"), fs::permissions(file_, fs::perms::none); },
      [&] { Write("com.varnix.plugin.licenseKey=large\n"), fs::resize_file(file_, 2 << 20); },
  };
  MakeDirectory();
  for (const auto& obstruct : obstacles) {
    obstruct();
    struct stat before, after;
    ASSERT_EQ(lstat(file_.c_str(), &before), 0);
    Save("url", "key");
    EXPECT_EQ(LoadUrl(), "");
    EXPECT_EQ(LoadKey(), "");
    EXPECT_EQ(FilesInDirectory(), 1);
    ASSERT_EQ(lstat(file_.c_str(), &after), 0);
    EXPECT_EQ(before.st_ino, after.st_ino);
    fs::remove(file_);
  }
  fs::remove(directory_);
  std::ofstream(directory_) << "a file where the directory should be";
  Save("url", "key");
  EXPECT_EQ(LoadKey(), "");
  EXPECT_TRUE(fs::is_regular_file(directory_));
}

TEST_F(PrefsLinuxTest, DamagedLinesAreEmptyTextsAndStayUntilTheirOwnSettingIsSaved) {
  const std::string key = Prefs::kLicenseKeyKey;
  const std::string damaged[] = {
      key + "=cut short",
      key + "=unknown escape \\q\n",
      key + "=open escape \\\n",
      key + "=\xFF\xFE\n",
      key + "=" + std::string(16, '\0') + "\n",
      key + " = spaced\n",
      key + "\n",
      key + "Other=value\n",
      "=\n\n\\\n" + std::string(4096, '\0'),
  };
  for (const std::string& lines : damaged) {
    Write(lines);
    EXPECT_EQ(LoadKey(), "") << lines;
    InNewProcess([] { return Prefs::SaveBaseUrl("url"), ""; });
    EXPECT_EQ(Bytes(), "com.varnix.plugin.baseUrl=url\n" + lines);
    EXPECT_EQ(LoadKey(), "") << lines;
    InNewProcess([] { return Prefs::SaveLicenseKey("key"), ""; });
    EXPECT_EQ(LoadUrl() + LoadKey(), "urlkey") << lines;
  }
}

TEST_F(PrefsLinuxTest, ATextTooLargeToBeLoadedAgainIsNotSaved) {
  Save("url", "key");
  Save(std::string(2 << 20, 'u'), "new key");
  EXPECT_EQ(LoadUrl() + " " + LoadKey(), "url new key");
}

TEST_F(PrefsLinuxTest, TwoProcessesThatSaveAtOnceLoseNothing) {
  for (int round = 0; round < 20; ++round) {
    const std::string text = std::to_string(round);
    InNewProcess([&] {
      const bool parent = fork() != 0;
      parent ? Prefs::SaveBaseUrl(text) : Prefs::SaveLicenseKey(text);
      return "";
    });
    ASSERT_EQ(LoadUrl() + "," + LoadKey(), text + "," + text);
  }
}

TEST_F(PrefsLinuxTest, ASaveDoesNotWaitForeverForAnotherOne) {
  Save("url", "key");
  const FileDescriptor other(open(directory_.c_str(), O_RDONLY | O_DIRECTORY));
  ASSERT_EQ(flock(other.get(), LOCK_EX), 0);
  InNewProcess([] { return Prefs::SaveLicenseKey("new"), ""; });
  EXPECT_EQ(LoadKey(), "key");
}

}  // namespace
