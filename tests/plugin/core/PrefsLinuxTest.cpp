// Where and how Linux stores the settings, and that no fault loses a stored value.
#include <sys/resource.h>
#include <sys/stat.h>

#include <csignal>
#include <fstream>
#include <functional>
#include <iterator>

#include "plugin/core/PrefsFixture.h"

namespace fs = std::filesystem;

void MoveHome(const fs::path& home) {
  setenv("HOME", home.c_str(), 1);
  unsetenv("XDG_CONFIG_HOME");
}

void InAnotherRun(const std::function<void()>& body) { InNewProcess(body); }

namespace {

class PrefsLinuxTest : public PrefsTest {
 protected:
  static void Write(const fs::path& path, const std::string& bytes) { std::ofstream(path, std::ios::binary) << bytes; }
  std::ptrdiff_t Files() const { return std::distance(fs::directory_iterator(directory_), {}); }

  const fs::path directory_ = home_ / ".config" / "varnix";
  const fs::path key_ = directory_ / "com.varnix.plugin.licenseKey", url_ = directory_ / "com.varnix.plugin.baseUrl";
  const fs::path old_ = directory_ / "preferences";
};

TEST_F(PrefsLinuxTest, EachIsAPrivateFileThatHoldsOnlyItsText) {
  for (const mode_t mask : {0, 0777}) {
    fs::remove_all(home_ / ".config");
    const mode_t before = umask(mask);
    Save("https://varnix.example", "back\\slash\nline \xF0\x9F\x98\x80 a=b");
    umask(before);
    EXPECT_EQ(Contents(key_), "back\\slash\nline \xF0\x9F\x98\x80 a=b");
    EXPECT_EQ(Contents(url_), "https://varnix.example");
    for (const fs::path& file : {key_, url_}) EXPECT_EQ(fs::status(file).permissions(), fs::perms(0600));
    EXPECT_EQ(fs::status(directory_).permissions(), fs::perms(0700));
    EXPECT_EQ(Files(), 2);
  }
}

TEST_F(PrefsLinuxTest, AFailedSaveKeepsTheOldText) {
  Save("url", "key");
  InNewProcess([] {
    const rlimit half = {2000, 2000};
    setrlimit(RLIMIT_FSIZE, &half);  // as a full disk
    signal(SIGXFSZ, SIG_IGN);
    Prefs::SaveBaseUrl(std::string(4000, 'u'));
  });
  Save(std::string(2 << 20, 'u'), "new key");  // too large to be loaded again
  ExpectStored("url", "new key");
  EXPECT_EQ(Files(), 2);
  fs::remove_all(directory_);
  std::ofstream(directory_) << "a file where the directory should be";
  Save("url", "key");
  ExpectStored("", "");
}

TEST_F(PrefsLinuxTest, AnythingButATextThatWasSavedIsEmptyAndReplacedByTheNextSave) {
  const fs::path linked = home_ / "linked";
  const std::function<void()> obstacles[] = {
      [&] { mkfifo(key_.c_str(), 0666); },
      [&] { Write(key_, "secret"), fs::permissions(key_, fs::perms::none); },
      [&] { Write(key_, "large"), fs::resize_file(key_, 2 << 20); },
      [&] {
        Write(key_,
              "\xFF"
              "a\xFE");
      },
      [&] { Write(key_, std::string("a\0b", 3)); },
      [&] { fs::create_symlink("/dev/zero", key_); },
      [&] { Write(linked, ""), fs::create_symlink(linked, key_); },
  };
  Save("url", "");  // makes the directory
  for (const auto& obstruct : obstacles) {
    fs::remove(key_);
    obstruct();
    ExpectStored("url", "");
    Save("url", "key");
    EXPECT_TRUE(fs::is_regular_file(fs::symlink_status(key_)));
    ExpectStored("url", "key");
  }
  EXPECT_EQ(Contents(linked), "") << "a link must not lead the key elsewhere";
}

TEST_F(PrefsLinuxTest, TheFileOfEarlierVersionsServesUntilBothAreSaved) {
  Save("", "");
  const auto write = [&](const std::string& lines) { fs::remove(key_), fs::remove(url_), Write(old_, lines); };
  write("com.varnix.plugin.licenseKey=K\\\\1\\n2\nx=y\ncom.varnix.plugin.baseUrl=https://a\n");
  ExpectStored("https://a", "K\\1\n2");
  InNewProcess([] { Prefs::SaveLicenseKey("K2"); });
  ExpectStored("https://a", "K2");
  InNewProcess([] { Prefs::SaveBaseUrl("https://b"); });
  ExpectStored("https://b", "K2");
  EXPECT_EQ(Files(), 2);
  for (const char* damaged : {"com.varnix.plugin.licenseKey=cut short", "xcom.varnix.plugin.licenseKey=a\n", "\n=\n"}) {
    write(damaged);
    ExpectStored("", "");
  }
}

}  // namespace
