// What other programs have on the clipboard, the honest and the broken ones.
#include <atomic>
#include <chrono>

#include "core/Clock.h"
#include "plugin/clipboard/x11/PasteboardFixture.h"

namespace {

std::atomic<std::int64_t> g_clockOffset = 0;

using PasteboardReads = PasteboardFixture;

TEST_F(PasteboardReads, TextInTheEncodingOfItsType) {
  const struct {
    std::string target, type, bytes, text;
  } cases[] = {{"UTF8_STRING", kPlainTextType, "Größe \xE2\x82\xAC\n", "Größe \xE2\x82\xAC\n"},
               {"STRING", "STRING", "Gr\xF6\xDF\x65", "Größe"},
               {"UTF8_STRING", kPlainTextType, "\xFF\xFE", ""}};
  for (const auto& [target, type, bytes, text] : cases) {
    XclipCopies(bytes, target);
    EXPECT_EQ(Text(), text);
    EXPECT_EQ(AllTypes(), Types{type});
    EXPECT_EQ(Data(type), bytes);
  }
}

TEST_F(PasteboardReads, BytesAsTheyAreHoweverMany) {
  const std::string bytes = Large(50'000'000) + std::string("\0\xFF\r\n", 4);
  XclipCopies(bytes, "Mac-XMSS");
  EXPECT_TRUE(Data("Mac-XMSS") == bytes);
}

TEST_F(PasteboardReads, TypesWithoutThoseOfTheProtocolAndAskedForOnce) {
  const FakeOwner owner(server_->display(), Manner::kObliging,
                        {"TARGETS", "XMSS", "TIMESTAMP", "MULTIPLE", "UTF8_STRING", "SAVE_TARGETS", "DELETE", "XMSS",
                         kPlainTextType, "text/plain;charset=utf-8", "not UTF-8: \xFF"},
                        "bytes");
  const auto pasteboard = Pasteboard::Open();
  std::string bytes;
  EXPECT_EQ(pasteboard->Types(), (Types{"XMSS", kPlainTextType, "text/plain;charset=utf-8"}));
  EXPECT_EQ(pasteboard->AvailableType({"Mac-XMSS", kPlainTextType, "XMSS"}), kPlainTextType);
  EXPECT_FALSE(pasteboard->DataForType("Mac-XMSS", bytes));
  EXPECT_TRUE(pasteboard->DataForType("XMSS", bytes));
  EXPECT_EQ(bytes, "bytes");
  EXPECT_EQ(owner.Requests(), 2);
}

// Whatever an owner does wrong, its clipboard counts as empty and the next owner's is read.
TEST_F(PasteboardReads, NothingFromABrokenOwnerAndThenTheNextOnes) {
  for (const auto manner : {Manner::kSilent, Manner::kRefusing, Manner::kStalls, Manner::kTrickles, Manner::kEndless}) {
    SCOPED_TRACE(static_cast<int>(manner));
    {
      const FakeOwner broken(server_->display(), manner, {"UTF8_STRING"}, std::string(100, 'x'));
      EXPECT_EQ(Text(), "");
    }
    const FakeOwner next(server_->display(), Manner::kObliging, {"UTF8_STRING"}, "whole");
    EXPECT_EQ(Text(), "whole");
  }
}

TEST_F(PasteboardReads, AStalledOwnerIsLeftAloneForAWhile) {
  const FakeOwner owner(server_->display(), Manner::kSilent, {"UTF8_STRING"}, "");
  EXPECT_EQ(Text(), "");
  EXPECT_EQ(Text(), "");
  EXPECT_EQ(owner.Requests(), 1);
  AdvanceClock(x11::kStalledOwnerPauseMs);
  EXPECT_EQ(Text(), "");
  EXPECT_EQ(owner.Requests(), 2);
}

}  // namespace

void AdvanceClock(std::int64_t milliseconds) { g_clockOffset += milliseconds; }

std::int64_t SteadyMilliseconds() {
  const auto now = std::chrono::steady_clock::now().time_since_epoch();
  return std::chrono::duration_cast<std::chrono::milliseconds>(now).count() + g_clockOffset;
}
