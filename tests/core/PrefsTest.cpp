// What every platform's store of the two settings does.
#include "core/Prefs.h"

#include <gtest/gtest.h>

#include "tests/core/PrefsFixture.h"

namespace {

TEST_F(PrefsTest, AFreshUserHasNeitherSetting) {
  EXPECT_EQ(LoadUrl(), "");
  EXPECT_EQ(LoadKey(), "");
}

TEST_F(PrefsTest, EveryTextIsThereInTheNextRun) {
  // Without characters beyond U+FFFF, which GNUstep's own property lists lose.
  const std::string texts[] = {
      "https://varnix.example",
      "",
      " two words ",
      "a=b\nc=d\n\n",
      "\\n \\\\n \\",
      "\ttab \"quotes\" <tag> & 'apostrophe'",
      "gr\xC3\xBC\xC3\x9F \xE6\xBC\xA2\xE5\xAD\x97 \xEF\xBF\xBD",
      "com.varnix.plugin.licenseKey=",
      std::string(100000, 'k'),
  };
  for (const std::string& text : texts) {
    Save(text, "key " + text);
    EXPECT_EQ(LoadUrl(), text);
    EXPECT_EQ(LoadKey(), "key " + text);
  }
}

TEST_F(PrefsTest, SavingOneSettingLeavesTheOther) {
  InNewProcess([] { return Prefs::SaveLicenseKey("key"), ""; });
  EXPECT_EQ(LoadUrl(), "");
  InNewProcess([] { return Prefs::SaveBaseUrl("url"), ""; });
  EXPECT_EQ(LoadUrl(), "url");
  EXPECT_EQ(LoadKey(), "key");
}

TEST_F(PrefsTest, ASavedTextIsThereInTheSameRun) {
  const std::string loaded = InNewProcess([] {
    Prefs::SaveLicenseKey("first");
    Prefs::SaveLicenseKey("second");
    return Prefs::LoadLicenseKey();
  });
  EXPECT_EQ(loaded, "second");
}

TEST_F(PrefsTest, TheOldTextStaysWhenTheNewOneIsNotUtf8) {
  Save("url", "key");
  const char* const texts[] = {
      "\xFF",
      "cut short \xC3",
      "\xA9 on its own",
      "overlong \xC0\xAF",
      "overlong \xE0\x80\xAF",
      "surrogate \xED\xA0\x80",
      "too large \xF4\x90\x80\x80",
      "\xF8\x88\x80\x80\x80",
  };
  for (const char* text : texts) {
    Save(text, text);
    EXPECT_EQ(LoadUrl(), "url") << text;
    EXPECT_EQ(LoadKey(), "key") << text;
  }
}

}  // namespace
