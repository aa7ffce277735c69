// Kinds, their type names, and the guess of a kind from XML.
#include "clipboard/ClipboardTypes.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>

#include "tests/support/FakePasteboard.h"

namespace {

using namespace std::string_literals;
using Names = std::vector<std::string>;

TEST(ClipboardTypeCandidates, StandInTheOrderInWhichTheyAreTried) {
  const std::pair<std::string, Names> cases[] = {
      {"XMSS",
       {"CorePasteboardFlavorType 0x584D5353", "Mac-XMSS", "XMSS", "dyn.ah62d4rv4gk8zuxnxnq", "ScriptStep",
        "Mac-ScriptStep"}},
      {"XMSC",
       {"CorePasteboardFlavorType 0x584D5343", "Mac-XMSC", "XMSC", "dyn.ah62d4rv4gk8zuxnxkq", "Script", "Mac-Script"}},
      {"XML2",
       {"CorePasteboardFlavorType 0x584D4C32", "Mac-XML2", "XML2", "dyn.ah62d4rv4gk8zuxnqgk", "Layout12",
        "Mac-Layout12"}},
      {"XMVL", {"CorePasteboardFlavorType 0x584D564C", "Mac-XMVL", "XMVL", "ValueList", "Mac-ValueList"}},
      {"XMFN",
       {"CorePasteboardFlavorType 0x584D464E", "Mac-XMFN", "XMFN", "dyn.ah62d4rv4gk8zuxngm2", "CustomFunction",
        "Mac-CustomFunction"}},
      {"XMFD",
       {"CorePasteboardFlavorType 0x584D4644", "Mac-XMFD", "XMFD", "dyn.ah62d4rv4gk8zuxngku", "Field",
        "FieldDefinition", "Mac-Field", "Mac-FieldDefinition"}},
      {"XMTB",
       {"CorePasteboardFlavorType 0x584D5442", "Mac-XMTB", "XMTB", "dyn.ah62d4rv4gk8zuxnykk", "Table", "BaseTable",
        "Mac-Table", "Mac-BaseTable"}},
      {"XMLO", {"CorePasteboardFlavorType 0x584D4C4F", "Mac-XMLO", "XMLO"}},
      {"", {"Mac-"}},
      {"ABCD", {"CorePasteboardFlavorType 0x41424344", "Mac-ABCD", "ABCD"}},
      {"xmss", {"CorePasteboardFlavorType 0x786D7373", "Mac-xmss", "xmss"}},
      {"\xFF\x01zz", {"CorePasteboardFlavorType 0xFF017A7A", "Mac-\xFF\x01zz", "\xFF\x01zz"}},
      {"XMSSX", {"Mac-XMSSX", "XMSSX"}},
  };
  for (const auto& [code, names] : cases) {
    Names scratch;
    EXPECT_EQ(BuildClipboardTypeCandidates(code), names);
    EXPECT_EQ(ClipboardTypeCandidates(code, scratch), names);
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

TEST(DetectXmlClipboardType, TakesTheSampleSnippetsForTheirKinds) {
  const std::map<std::string, std::string> otherKinds = {
      {"XMSC-varnix-live-push", "XMSS"},         {"XMVL-values-from-a-field", "XMFD"},
      {"XMFN-formula-that-makes-steps", "XMSS"}, {"XML2-field-on-a-layout", "XMFD"},
      {"XML2-button-with-a-step", "XMSS"},       {"XMLO-text-label", "XML2"}};
  int count = 0;
  for (const auto& file : std::filesystem::directory_iterator(SAMPLES "/snippets")) {
    std::ostringstream xml;
    xml << std::ifstream(file.path(), std::ios::binary).rdbuf();
    const std::string name = file.path().stem();
    const auto other = otherKinds.find(name);
    EXPECT_EQ(DetectXmlClipboardType(xml.str()), other == otherKinds.end() ? name.substr(0, 4) : other->second) << name;
    ++count;
  }
  EXPECT_GE(count, 8);
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
