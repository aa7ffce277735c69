// Kinds, their type names, and the guess of a kind from XML.
#include "clipboard/ClipboardTypes.h"

#include <gtest/gtest.h>

#include "plugin/clipboard/KindReference.h"
#include "support/Rows.h"

namespace {

TEST(BuildClipboardTypeCandidates, AreInTheOrderInWhichTheyAreTried) {
  const auto names = [](const std::string& code) {
    std::string joined;
    for (const auto& name : BuildClipboardTypeCandidates(code)) joined += name + '|';
    return joined;
  };
  ExpectRows(DATA "/type-names.txt", names);
  EXPECT_EQ(names("\xFF\x01zz"), "CorePasteboardFlavorType 0xFF017A7A|Mac-\xFF\x01zz|\xFF\x01zz|");
}

TEST(DetectXmlClipboardType, AgreesWithTheReference) {
  std::vector<std::string> pieces = {"<Step",  "<Script", "ScriptUUID", "ScriptUUI",      "<BaseTable", "<Table",
                                     "<Field", "<Ste",    "<field",     "UUID",           "Script",     "<ValueList",
                                     "<",      "U",       "x",          "<CustomFunction"};
  for (const auto& [size, c] : {std::pair(3000, ' '), {40000, '<'}, {33000, 'U'}}) pieces.emplace_back(size, c);
  // Also across the boundaries of blocks.
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
