// The pasteboard seam of macOS over stand-ins of Carbon and AppKit: what the tests of the clipboard operations do not
// cover.
#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <optional>

#include "clipboard/Clipboard.h"
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

// AppKit raises when the pasteboard server is lost, which Carbon does not.
TEST_F(PasteboardMacTest, ReportsWhatTheSystemRefusesOrRaisesAt) {
  std::string bytes = "untouched";
  std::optional<std::uint64_t> listed;
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
      {{"gone"}, [&] { return access->ChangeCount() == listed; }},
      {{"gone"}, [&] { return access->DeclareTypes(true, {"B"}), fake.items.empty(); }},
  };
  ASSERT_TRUE(access->OpenItems() && access->ClearItems());
  access->DeclareTypes(true, {"A", kNotUtf8});
  EXPECT_EQ(fake.declared, (Names{kText, "A"})) << "the text first, and no name that is not UTF-8";
  fake.items = {{{"A", "data"}, {kText, "text"}}};
  listed = access->ChangeCount();
  fake.items[0].emplace_back("B", "added");
  EXPECT_NE(access->ChangeCount(), listed) << "the system's number does not change when types are added";
  fake.items[0].pop_back();
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
    std::string text, error;
    for (const bool older : {true, false}) {
      fake.hasItems = older;
      Clipboard::SetXML("XMSS", "\xEF\xBB\xBFx", error);
      Clipboard::GetXML("XMSS", text, error);
      Clipboard::GetXML("XMSC", text, error);
    }
    Clipboard::SetText("x", error);
    Clipboard::GetText(text, error);
    Clipboard::GetFormats(text, error);
    Clipboard::ChangeCount();
    const auto pasteboard = Pasteboard::Open();
    pasteboard->AvailableType({"A"});
    return StandIn::FoundationObjects();  // with those of this access
  };
  for (const char* refusal : {"none", "PutFlavor XMSS", "CFData", "gone"}) {
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
