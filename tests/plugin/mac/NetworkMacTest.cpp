// The URL layer of macOS over a stand-in of the URL session: what the tests of the HTTP calls do not cover.
#include <gtest/gtest.h>

#include <future>

#include "net/Network.h"
#include "net/Transfer.h"
#include "plugin/faults/Allocations.h"
#include "plugin/mac/standin/StandIn.h"
#include "support/FakeUrlLayer.h"

namespace {

using StandIn::Mood;

constexpr char kUrl[] = "http://a.example/";

struct NetworkMacTest : testing::Test {
  ~NetworkMacTest() override { StandIn::mood = Mood::kWilling; }

  static Network::Outcome Transfer(Mood mood = Mood::kWilling) {
    StandIn::mood = mood;
    const auto promise = std::make_shared<std::promise<Network::Outcome>>();
    Network::StartTransfer({kUrl, "POST", {{"Accept", "*/*"}}, "body"},
                           [promise](Network::Outcome outcome) { promise->set_value(std::move(outcome)); });
    return promise->get_future().get();
  }

  FakeUrlLayer layer;
};

TEST_F(NetworkMacTest, AcceptsOnlyUrlsThatFoundationAccepts) {
  for (const bool isMacOS14 : {false, true}) {
    if (isMacOS14) StandIn::UpgradeToMacOS14();
    EXPECT_TRUE(Network::IsURL(kUrl));
    for (const char* text : {"http://a.example/a b", "http://a.example/\xC3", "\xFF"}) {
      EXPECT_FALSE(Network::IsURL(text)) << text << isMacOS14;
    }
  }
}

TEST_F(NetworkMacTest, RequestsNothingCachedWithinTheTimeLimit) {
  Transfer();
  EXPECT_EQ(StandIn::cachePolicy, 1u);
  EXPECT_EQ(StandIn::timeoutInterval, 90);
}

TEST_F(NetworkMacTest, ReportsTransfersThatTheSessionDoesNotCreate) {
  for (const Mood mood : {Mood::kMakesNoTask, Mood::kRaises}) {
    EXPECT_EQ(Transfer(mood).failure, "The transfer could not be started.");
  }
  EXPECT_TRUE(layer.calls.empty());
}

TEST_F(NetworkMacTest, AcceptsAnAnswerThatIsNotHttp) {
  layer.answer = {true, "body", "", 404};
  const Network::Outcome outcome = Transfer(Mood::kIsNotHttp);
  EXPECT_EQ(outcome.body, "body");
  EXPECT_EQ(outcome.status, 0);
}

TEST_F(NetworkMacTest, KeepsNothingAliveBeyondATransfer) {
  const auto transferInEveryMood = [] {
    for (const Mood mood : {Mood::kWilling, Mood::kMakesNoTask, Mood::kRaises}) {
      FakeUrlLayer other;
      StandIn::mood = mood;
      std::string response, error;
      Network::Post(kUrl, "body", response, error);
    }
  };
  EXPECT_EQ(StandIn::ObjectsLeftBy(transferInEveryMood), 0);
  EXPECT_EQ(StandIn::semaphores, 0);
}

TEST_F(NetworkMacTest, SurvivesEveryFailingAllocation) {
  const std::string longText(100, 'x');
  for (const Network::Outcome& answer : {Network::Outcome{true, longText, "", 200}, {false, "", longText, 0}}) {
    bool failed = true;
    for (int after = 0; failed; ++after) {
      FakeUrlLayer each;  // whose own allocations are the same every time
      each.answer = answer;
      std::string response, error;
      bool isSent = false;
      allocations::FailAfter(after);
      try {
        isSent = Network::Post(kUrl, "body", response, error);
      } catch (const std::bad_alloc&) {  // on the caller's side
        error = "ERROR: caught";
      }
      failed = !allocations::TakeBack();
      EXPECT_TRUE(isSent ? response == longText : error.starts_with("ERROR: ")) << after << response << error;
    }
  }
}

}  // namespace
