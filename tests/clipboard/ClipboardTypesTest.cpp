// Kinds, their type names, and the guess of a kind from XML.
#include "clipboard/ClipboardTypes.h"

#include <gtest/gtest.h>

#include <random>

#include "tests/support/FakePasteboard.h"

namespace {

using namespace std::string_literals;
using Names = std::vector<std::string>;

TEST(ClipboardTypeCandidates, StandInTheOrderInWhichTheyAreTried) {
  const std::pair<std::string, std::string> cases[] = {
      {"XMSS", "CorePasteboardFlavorType 0x584D5353|Mac-XMSS|XMSS|dyn.ah62d4rv4gk8zuxnxnq|ScriptStep|Mac-ScriptStep|"},
      {"XMSC", "CorePasteboardFlavorType 0x584D5343|Mac-XMSC|XMSC|dyn.ah62d4rv4gk8zuxnxkq|Script|Mac-Script|"},
      {"XML2", "CorePasteboardFlavorType 0x584D4C32|Mac-XML2|XML2|dyn.ah62d4rv4gk8zuxnqgk|Layout12|Mac-Layout12|"},
      {"XMVL", "CorePasteboardFlavorType 0x584D564C|Mac-XMVL|XMVL|ValueList|Mac-ValueList|"},
      {"XMFN",
       "CorePasteboardFlavorType 0x584D464E|Mac-XMFN|XMFN|dyn.ah62d4rv4gk8zuxngm2|CustomFunction|Mac-CustomFunction|"},
      {"XMFD",
       "CorePasteboardFlavorType 0x584D4644|Mac-XMFD|XMFD|dyn.ah62d4rv4gk8zuxngku|Field|FieldDefinition|Mac-Field|"
       "Mac-FieldDefinition|"},
      {"XMTB",
       "CorePasteboardFlavorType 0x584D5442|Mac-XMTB|XMTB|dyn.ah62d4rv4gk8zuxnykk|Table|BaseTable|Mac-Table|"
       "Mac-BaseTable|"},
      {"XMLO", "CorePasteboardFlavorType 0x584D4C4F|Mac-XMLO|XMLO|"},
      {"", "Mac-|"},
      {"xmss", "CorePasteboardFlavorType 0x786D7373|Mac-xmss|xmss|"},
      {"\xFF\x01zz", "CorePasteboardFlavorType 0xFF017A7A|Mac-\xFF\x01zz|\xFF\x01zz|"},
      {"XMSSX", "Mac-XMSSX|XMSSX|"},
  };
  for (const auto& [code, expected] : cases) {
    Names scratch;
    std::string names;
    for (const auto& name : ClipboardTypeCandidates(code, scratch)) names += name + '|';
    EXPECT_EQ(names, expected);
    EXPECT_EQ(ClipboardTypeCandidates(code, scratch), BuildClipboardTypeCandidates(code));
  }
}

TEST(AddUniqueType, DropsEmptyAndRepeatedNamesOnly) {
  Names list;
  for (const char* type : {"a", "", "A", "a", "a "}) AddUniqueType(list, type);
  EXPECT_EQ(list, (Names{"a", "A", "a "}));
}

// The tests one after the other, as the rule is told.
std::string SlowDetection(const std::string& xml) {
  const std::pair<const char*, const char*> tests[] = {
      {"<Step", "XMSS"},  {"<Script", "XMSC"}, {"ScriptUUID", "XMSC"}, {"<BaseTable", "XMTB"},
      {"<Table", "XMTB"}, {"<Field", "XMFD"},  {"<ValueList", "XMVL"}, {"<CustomFunction", "XMFN"}};
  for (const auto& [mark, code] : tests) {
    if (xml.find(mark) != xml.npos) return code;
  }
  return "XML2";
}

TEST(DetectXmlClipboardType, AgreesWithTheTestsOneAfterTheOther) {
  std::vector<std::string> pieces = {"<Step",  "<Script", "ScriptUUID", "ScriptUUI",      "<BaseTable", "<Table",
                                     "<Field", "<Ste",    "<field",     "UUID",           "Script",     "<ValueList",
                                     "<",      "U",       "x",          "<CustomFunction"};
  for (const auto& [size, c] : {std::pair(3000, ' '), {40000, '<'}, {33000, 'U'}}) pieces.emplace_back(size, c);
  std::mt19937 random(1);
  for (int round = 0; round < 3000; ++round) {
    std::string xml;
    // Mostly little is in it, so that every mark gets its chance to win, across the edges of blocks too.
    for (int n = static_cast<int>(random() % 6); n > 0; --n) {
      xml += pieces[random() % pieces.size()].substr(0, 1 + random() % 40000);
    }
    EXPECT_EQ(DetectXmlClipboardType(xml), SlowDetection(xml));
  }
  for (std::size_t before : {32766u, 32767u, 32768u, 65530u}) {
    for (const auto& piece : pieces) {
      const std::string xml = std::string(before, ' ') + piece;
      EXPECT_EQ(DetectXmlClipboardType(xml), SlowDetection(xml));
    }
  }
}

struct Probe : testing::Test {
  Probe() { FakePasteboard::Current() = &fake; }
  FakePasteboard fake;
};

TEST_F(Probe, TriesKindsInTheirOwnOrder) {
  for (const bool older : {true, false}) {
    fake.hasItems = older;
    FakePasteboard::Item item;
    for (const char* kind : {"XMLO", "XMVL", "XMFN", "XMFD", "XMTB", "XML2", "XMSC", "XMSS"}) {
      item.emplace_back("Mac-"s + kind, kind);
      fake.Replace(item);
      std::string code, xml, error = "of an earlier call";
      EXPECT_TRUE(ProbeFileMakerClipboardXML(code, xml, error));
      EXPECT_EQ(code + xml + error, kind + ""s + kind);
    }
  }
}

TEST_F(Probe, LeavesItsResultsAloneWhenThereIsNothing) {
  fake.Replace({{"Mac-XMSS", ""}, {"public.utf8-plain-text", "text"}});
  std::string code = "before", xml = "before", error;
  EXPECT_FALSE(ProbeFileMakerClipboardXML(code, xml, error));
  EXPECT_EQ(code + xml + error, "beforebefore");
}

}  // namespace
