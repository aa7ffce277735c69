// Where and how Linux keeps the settings, and that no fault costs a stored value or a wait.
#include <fcntl.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <csignal>
#include <cstdio>
#include <fstream>
#include <functional>
#include <iterator>

#include "core/FileDescriptor.h"
#include "plugin/core/PrefsFixture.h"

namespace fs = std::filesystem;

void MoveHome(const fs::path& home) {
  setenv("HOME", home.c_str(), 1);
  unsetenv("XDG_CONFIG_HOME");
}

namespace {

class PrefsLinuxTest : public PrefsTest {
 protected:
  void Write(const std::string& bytes) const { std::ofstream(file_, std::ios::binary) << bytes; }
  std::string Bytes() const {
    std::ifstream stream(file_, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
  }
  std::ptrdiff_t FilesInDirectory() const { return std::distance(fs::directory_iterator(directory_), {}); }

  const fs::path directory_ = home_ / ".config" / "varnix";
  const fs::path file_ = directory_ / "preferences";
};

TEST_F(PrefsLinuxTest, WritesOneLineForEachSettingIntoAPrivateFile) {
  umask(0);
  Save("https://varnix.example", "back\\slash\nline \xF0\x9F\x98\x80 a=b");
  EXPECT_EQ(Bytes(),
            "com.varnix.plugin.licenseKey=back\\\\slash\\nline \xF0\x9F\x98\x80 a=b\n"
            "com.varnix.plugin.baseUrl=https://varnix.example\n");
  EXPECT_EQ(fs::status(file_).permissions(), fs::perms(0600));
  EXPECT_EQ(fs::status(directory_).permissions(), fs::perms(0700));
  EXPECT_EQ(FilesInDirectory(), 1);
  ExpectStored("https://varnix.example", "back\\slash\nline \xF0\x9F\x98\x80 a=b");
}

TEST_F(PrefsLinuxTest, ASaveOnAFullDiskLeavesTheOldFileAlone) {
  Save("url", "key");
  InNewProcess([] {
    const rlimit half = {2000, 2000};
    setrlimit(RLIMIT_FSIZE, &half);
    signal(SIGXFSZ, SIG_IGN);
    Prefs::SaveBaseUrl(std::string(4000, 'u'));
  });
  ExpectStored("url", "key");
  EXPECT_EQ(FilesInDirectory(), 1);
}

TEST_F(PrefsLinuxTest, WhatCannotBeReadIsNotReplaced) {
  const std::function<void()> obstacles[] = {
      [&] { mkfifo(file_.c_str(), 0666); },
      [&] { fs::create_directory(file_); },
      [&] { Write("com.varnix.plugin.licenseKey=secret\n"), fs::permissions(file_, fs::perms::none); },
      [&] { Write("com.varnix.plugin.licenseKey=large\n"), fs::resize_file(file_, 2 << 20); },
      [&] { fs::remove(directory_), std::ofstream(directory_) << "a file where the directory should be"; },
  };
  Save("", "");  // makes the directory
  for (const auto& obstruct : obstacles) {
    std::remove(file_.c_str());
    obstruct();
    struct stat before = {}, after = {};
    lstat(file_.c_str(), &before);
    Save("url", "key");
    ExpectStored("", "");
    lstat(file_.c_str(), &after);
    EXPECT_EQ(before.st_ino, after.st_ino);
  }
}

TEST_F(PrefsLinuxTest, DamagedLinesAreEmptyTextsAndStayUntilTheirOwnSettingIsSaved) {
  const std::string key = Prefs::kLicenseKeyKey;
  const std::string damaged[] = {key + "=cut short", key + "=unknown escape \\q\n", key + "=\xFF" + "a\xFE\n",
                                 "=\n\n\\\n" + std::string(4096, '\0')};
  Save("", "");  // makes the directory
  for (const std::string& lines : damaged) {
    Write(lines);
    InNewProcess([] { Prefs::SaveBaseUrl("url"); });
    EXPECT_EQ(Bytes(), "com.varnix.plugin.baseUrl=url\n" + lines);
    ExpectStored("url", "");
    InNewProcess([] { Prefs::SaveLicenseKey("key"); });
    ExpectStored("url", "key");
  }
  Save(std::string(2 << 20, 'u'), "new key");
  ExpectStored("url", "new key");  // a text too large to be loaded again is not saved
}

TEST_F(PrefsLinuxTest, TwoProcessesThatSaveAtOnceLoseNothing) {
  for (int round = 0; round < 20; ++round) {
    const std::string text = std::to_string(round);
    InNewProcess([&] {
      const pid_t other = fork();
      other == 0 ? Prefs::SaveBaseUrl(text) : Prefs::SaveLicenseKey(text);
      if (other == 0) _exit(0);
      waitpid(other, nullptr, 0);
    });
    ExpectStored(text, text);
  }
}

TEST_F(PrefsLinuxTest, ASaveDoesNotWaitForeverForAnotherOne) {
  Save("url", "key");
  const FileDescriptor other(open(directory_.c_str(), O_RDONLY | O_DIRECTORY));
  ASSERT_EQ(flock(other.get(), LOCK_EX), 0);
  InNewProcess([] { Prefs::SaveLicenseKey("new"); });
  ExpectStored("url", "key");
}

}  // namespace
