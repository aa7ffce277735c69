// What other programs have on the clipboard, the honest and the broken ones.
#include "tests/clipboard/x11/PasteboardFixture.h"

namespace {

using PasteboardReads = PasteboardFixture;

TEST_F(PasteboardReads, NothingWhenNobodyOwnsTheClipboard) {
  EXPECT_EQ(Text(), "");
  EXPECT_EQ(AllTypes(), Types{});
  EXPECT_EQ(Pasteboard::Open()->AvailableType({"Mac-XMSS", kPlainTextType}), "");
  EXPECT_EQ(Data("Mac-XMSS"), std::nullopt);
}

TEST_F(PasteboardReads, TheTextThatAnotherProgramCopied) {
  XclipCopies("Größe \xE2\x82\xAC\n");
  EXPECT_EQ(Text(), "Größe \xE2\x82\xAC\n");
  EXPECT_EQ(AllTypes(), Types{kPlainTextType});
  EXPECT_EQ(Data(kPlainTextType), "Größe \xE2\x82\xAC\n");
}

TEST_F(PasteboardReads, OldTextAsLatin1) {
  XclipCopies("Gr\xF6\xDF\x65", "STRING");
  EXPECT_EQ(Text(), "Größe");
  EXPECT_EQ(Data("STRING"), "Gr\xF6\xDF\x65");
}

TEST_F(PasteboardReads, NoTextThatIsNotUtf8) {
  XclipCopies("\xFF\xFE");
  EXPECT_EQ(Text(), "");
}

TEST_F(PasteboardReads, BytesAsTheyAreHoweverMany) {
  const std::string bytes = Large(50'000'000) + std::string("\0\xFF\r\n", 4);
  XclipCopies(bytes, "Mac-XMSS");
  EXPECT_TRUE(Data("Mac-XMSS") == bytes);
}

TEST_F(PasteboardReads, TypesWithoutThoseOfTheProtocolAndOnce) {
  const FakeOwner owner(server_->display(), Manner::kObliging,
                        {"TARGETS", "XMSS", "TIMESTAMP", "MULTIPLE", "UTF8_STRING", "SAVE_TARGETS", "DELETE", "XMSS",
                         kPlainTextType, "text/plain;charset=utf-8", "not UTF-8: \xFF"},
                        "bytes");
  EXPECT_EQ(AllTypes(), (Types{"XMSS", kPlainTextType, "text/plain;charset=utf-8"}));
  EXPECT_EQ(Pasteboard::Open()->AvailableType({"Mac-XMSS", kPlainTextType, "XMSS"}), kPlainTextType);
  EXPECT_EQ(Data("XMSS"), "bytes");
  EXPECT_EQ(Data("Mac-XMSS"), std::nullopt);
}

TEST_F(PasteboardReads, OneOperationAsksOnceForTheTypes) {
  const FakeOwner owner(server_->display(), Manner::kObliging, {"Script", "XMSC"}, "bytes");
  const auto pasteboard = Pasteboard::Open();
  std::string bytes;
  EXPECT_EQ(pasteboard->AvailableType({"Mac-XMSC", "XMSC", "Script"}), "XMSC");
  EXPECT_TRUE(pasteboard->DataForType("XMSC", bytes));
  EXPECT_EQ(owner.Requests(), 2);
}

// Whatever an owner does wrong, its clipboard counts as empty and the next owner's is read.
TEST_F(PasteboardReads, NothingFromABrokenOwnerAndThenTheNextOnes) {
  for (const auto manner : {Manner::kSilent, Manner::kRefusing, Manner::kStallsBetweenPieces,
                            Manner::kDiesBetweenPieces, Manner::kTrickles, Manner::kEndless}) {
    SCOPED_TRACE(static_cast<int>(manner));
    {
      const FakeOwner broken(server_->display(), manner, {"UTF8_STRING"}, "broken");
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

TEST_F(PasteboardReads, ALateAnswerIsNotTakenForTheNext) {
  const FakeOwner owner(server_->display(), Manner::kAnswersLate, {"UTF8_STRING"}, "in time");
  EXPECT_EQ(Text(), "");
  AdvanceClock(x11::kStalledOwnerPauseMs);
  EXPECT_EQ(Text(), "in time");
}

TEST_F(PasteboardReads, AnAnswerThatComesTwiceHarmsNothing) {
  const FakeOwner owner(server_->display(), Manner::kAnswersTwice, {"UTF8_STRING", "XMSS"}, "bytes");
  for (int i = 0; i < 100; ++i) {
    ASSERT_EQ(AllTypes(), (Types{kPlainTextType, "XMSS"}));
    ASSERT_EQ(Text(), "bytes");
  }
}

}  // namespace
