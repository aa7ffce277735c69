// What every platform's store of the two settings does.
#include "core/Prefs.h"

#include <gtest/gtest.h>

#include "tests/core/PrefsFixture.h"

namespace {

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
  EXPECT_EQ(LoadUrl() + LoadKey(), "") << "a fresh user has neither";
  const std::string sameRun = InNewProcess([] {
    Prefs::SaveLicenseKey("first");
    Prefs::SaveLicenseKey("key");
    return Prefs::LoadLicenseKey();
  });
  EXPECT_EQ(sameRun, "key");
  EXPECT_EQ(LoadUrl(), "");
  InNewProcess([] { return Prefs::SaveBaseUrl("url"), ""; });
  EXPECT_EQ(LoadUrl(), "url");
  EXPECT_EQ(LoadKey(), "key");
}

TEST_F(PrefsTest, TheOldTextStaysWhenTheNewOneIsNotUtf8) {
  Save("url", "key");
  for (const char* text : {"\xFF", "cut short \xC3", "overlong \xE0\x80\xAF", "surrogate \xED\xA0\x80"}) {
    Save(text, text);
    EXPECT_EQ(LoadUrl(), "url") << text;
    EXPECT_EQ(LoadKey(), "key") << text;
  }
}

}  // namespace
