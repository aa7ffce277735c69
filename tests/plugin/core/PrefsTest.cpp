// The rules for the two settings that hold on every platform.
#include "plugin/core/PrefsFixture.h"

namespace {

TEST_F(PrefsTest, EveryTextIsLoadedInTheNextRun) {
  ExpectStored("", "");
  // Without characters beyond U+FFFF, which GNUstep's own property lists lose.
  const std::string texts[] = {
      "https://varnix.example",
      "",
      "a=b\nc=d\n\n",
      "\\n \\\\n \\",
      "\ttab \"quotes\" <tag> & 'apostrophe'",
      "gr\xC3\xBC\xC3\x9F \xE6\xBC\xA2\xE5\xAD\x97 \xEF\xBF\xBD",
      std::string(100000, 'k'),
  };
  for (const std::string& text : texts) {
    Save(text, "key " + text);
    ExpectStored(text, "key " + text);
  }
}

TEST_F(PrefsTest, EachIsSavedSeparatelyAndOnlyAsUtf8) {
  InAnotherRun([] {
    Prefs::SaveLicenseKey("first");
    Prefs::SaveLicenseKey("key");
    EXPECT_EQ(Prefs::LoadLicenseKey(), "key");
  });
  ExpectStored("", "key");
  for (const char* text : {"url", "\xFF", "cut short \xC3", "surrogate \xED\xA0\x80"}) {
    InAnotherRun([&] { Prefs::SaveBaseUrl(text); });
    ExpectStored("url", "key");
  }
}

}  // namespace
