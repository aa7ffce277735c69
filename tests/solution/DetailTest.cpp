// How elements appear in lists: key, place and short description, compared with data/details.txt.
#include "output/Detail.h"

#include <set>

#include "design/Key.h"
#include "references/ReferenceIndex.h"
#include "solution/SampleDesign.h"

namespace solution {
namespace {

TEST(Detail, DescribesEveryKind) {
  std::string lines;
  for (const Element& element : Sample().elements()) {
    lines += ParentPath(element) + " | " + DisplayName(element) + " | " + DetailOf(Sample(), element) + '\n';
  }
  EXPECT_EQ(lines, ReadFile(TEST_DATA "/details.txt"));
}

TEST(Key, IsKindAndIdWithoutUuids) {
  const auto design = ReadText(SampleWithoutUuids());
  const struct {
    const char* name;
    const char* key;
  } rows[] = {
      {"Orders.fmp12", "file:0"},           {"Customers::Name", "field:130.2"}, {"Reset", "script:3"},
      {"Stock", "tableOccurrence:1065092"}, {"Admin", "scriptFolder:2"},        {"Order Form", "layout:2"},
  };
  for (const auto& [name, key] : rows) EXPECT_EQ(KeyOf(*design, *FindElements(*design, name).front()), key);
}

TEST(Key, FindsItsElementAndNoOther) {
  // Two elements with one UUID, and a script whose name looks like a key.
  std::string text = SampleWith("00000014-0000-4000-8000-000000000000", "00000013-0000-4000-8000-000000000000");
  text.replace(text.find("name=\"Unused\""), 13, "name=\"script:1\"");
  const auto renamed = ReadText(std::move(text));
  const auto oldest = ReadText(SampleWithoutUuids());
  for (const Design* design : {&Sample(), renamed.get(), oldest.get()}) {
    std::set<std::string> keys;
    for (const Element& element : design->elements()) {
      const std::string key = KeyOf(*design, element);
      EXPECT_EQ(FindKey(*design, key), &element) << key;
      EXPECT_EQ(FindElements(*design, key), std::vector{&element}) << key;
      EXPECT_TRUE(keys.insert(key).second) << key;
    }
  }
  EXPECT_EQ(FindElements(*renamed, "script:1").front()->name, "Start");
  for (const char* key : {"", ":", "script:", "script:1x", "script:-1", "field:129", "field:129.", "field:1.1",
                          "field:129.1.1", "folder:2", "scripts:1", "script:99999999999999999999"}) {
    EXPECT_EQ(FindKey(Sample(), key), nullptr) << key;
  }
}

}  // namespace
}  // namespace solution
