// Kinds, their type names, and the guess of a kind from XML.
#include "clipboard/ClipboardTypes.h"

#include <gtest/gtest.h>

#include "plugin/clipboard/KindReference.h"

namespace {

TEST(BuildClipboardTypeCandidates, StandInTheOrderInWhichTheyAreTried) {
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
    std::string names;
    for (const auto& name : BuildClipboardTypeCandidates(code)) names += name + '|';
    EXPECT_EQ(names, expected);
  }
}

TEST(DetectXmlClipboardType, AgreesWithTheTestsOneAfterTheOther) {
  std::vector<std::string> pieces = {"<Step",  "<Script", "ScriptUUID", "ScriptUUI",      "<BaseTable", "<Table",
                                     "<Field", "<Ste",    "<field",     "UUID",           "Script",     "<ValueList",
                                     "<",      "U",       "x",          "<CustomFunction"};
  for (const auto& [size, c] : {std::pair(3000, ' '), {40000, '<'}, {33000, 'U'}}) pieces.emplace_back(size, c);
  // Across the edges of blocks too.
  for (const std::size_t before : {0u, 32766u, 32767u, 32768u, 65530u}) {
    for (const auto& first : pieces) {
      for (const auto& second : pieces) {
        const std::string xml = std::string(before, ' ') + first + second;
        EXPECT_EQ(DetectXmlClipboardType(xml), reference::KindOf(xml));
      }
    }
  }
}

}  // namespace
