// The pasteboard seam of macOS over stand-ins of Carbon and AppKit, beyond what the tests of the clipboard operations
// show of it.
#include <gtest/gtest.h>

#include <functional>

#include "plugin/mac/standin/StandIn.h"
#include "support/FakePasteboard.h"

namespace {

using namespace std::string_literals;
using Names = std::vector<std::string>;
using Items = std::vector<FakePasteboard::Item>;

constexpr char kText[] = "public.utf8-plain-text";
constexpr char kNotUtf8[] = "Mac-\xC3";

struct PasteboardMacTest : testing::Test {
  PasteboardMacTest() { FakePasteboard::Current() = &fake; }

  FakePasteboard fake;
  std::unique_ptr<Pasteboard> access = Pasteboard::Open();
};

TEST_F(PasteboardMacTest, DeclaresTheTextBeforeTheTypes) {
  access->DeclareTypes(true, {"A", kNotUtf8});
  EXPECT_EQ(fake.declared, (Names{kText, "A"}));
}

// AppKit raises when the pasteboard server is lost, which Carbon does not.
TEST_F(PasteboardMacTest, TellsWhatTheSystemRefusesOrRaisesAt) {
  std::string bytes = "untouched";
  const std::pair<Names, std::function<bool()>> cases[] = {
      {{"not UTF-8"}, [&] { return access->PutFlavor(kNotUtf8, "new"); }},
      {{"not UTF-8"}, [&] { return access->CopyFlavor(1, kNotUtf8, bytes); }},
      {{"not UTF-8"}, [&] { return access->SetData(kNotUtf8, "new"); }},
      {{"not UTF-8"}, [&] { return access->DataForType(kNotUtf8, bytes); }},
      {{"not UTF-8"}, [&] { return !access->AvailableType({kNotUtf8}).empty(); }},
      {{"not UTF-8"}, [&] { return access->SetString("\xEF\xBB\xBF\xFF"); }},
      {{"CFString", "CFData"}, [&] { return access->PutFlavor("A", "new"); }},
      {{"CopyFlavor A", "GetItemIdentifier", "CFString", "CFData"}, [&] { return access->CopyFlavor(1, "A", bytes); }},
      {{"gone"}, [&] { return access->SetData("A", "new"); }},
      {{"gone"}, [&] { return access->SetString("new"); }},
      {{"gone"}, [&] { return !access->AvailableType({"A"}).empty(); }},
      {{"gone"}, [&] { return access->DataForType("A", bytes); }},
      {{"gone"}, [&] { return !access->String().empty(); }},
      {{"gone"}, [&] { return !access->Types().empty(); }},
      {{"gone"}, [&] { return access->DeclareTypes(true, {"B"}), fake.items.empty(); }},
  };
  ASSERT_TRUE(access->OpenItems() && access->ClearItems());
  fake.items = {{{"A", "data"}, {kText, "text"}}};
  fake.declared = {"A", kText};
  for (const auto& [refusals, call] : cases) {
    for (const auto& refusal : refusals) {
      fake.refused = {refusal};
      StandIn::pasteboardServerIsGone = refusal == "gone";
      EXPECT_FALSE(call()) << refusal;
      StandIn::pasteboardServerIsGone = false;
    }
  }
  EXPECT_EQ(bytes, "untouched");
  EXPECT_EQ(fake.items, Items({{{"A", "data"}, {kText, "text"}}}));
}

TEST_F(PasteboardMacTest, KeepsNothingAliveBeyondAnAccess) {
  const auto useAll = [&] {
    const auto pasteboard = Pasteboard::Open();
    std::string bytes;
    pasteboard->OpenItems();
    pasteboard->ClearItems();
    pasteboard->PutFlavor("A", "x");
    fake.items = {{{"A", "x"}}};
    pasteboard->CopyFlavor(1, "A", bytes);
    pasteboard->DeclareTypes(true, {"A"});
    pasteboard->SetData("A", "x");
    pasteboard->SetString("\xEF\xBB\xBFx");
    pasteboard->AvailableType({"A"});
    pasteboard->DataForType("A", bytes);
    pasteboard->String();
    pasteboard->Types();
    return StandIn::FoundationObjects();
  };
  for (const char* refusal : {"none", "PutFlavor A", "CFData", "gone"}) {
    fake.refused = {refusal};
    StandIn::pasteboardServerIsGone = refusal == "gone"s;
    useAll();  // the runtime keeps some objects from the first time
    const int before = StandIn::FoundationObjects();
    EXPECT_GT(useAll(), before);
    EXPECT_EQ(StandIn::FoundationObjects(), before);
  }
  StandIn::pasteboardServerIsGone = false;
}

}  // namespace
