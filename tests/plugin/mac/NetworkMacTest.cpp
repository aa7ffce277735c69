// The URL layer of macOS over a stand-in of the URL session, beyond what the tests of the HTTP calls show of it.
#include <gtest/gtest.h>

#include <future>

#include "net/Transfer.h"
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

TEST_F(NetworkMacTest, TakesNoTextForAUrlThatFoundationRefuses) {
  EXPECT_TRUE(Network::IsURL(kUrl));
  for (const char* text : {"http://a.example/a b", "http://a.example/\xC3", "\xFF"}) EXPECT_FALSE(Network::IsURL(text));
}

TEST_F(NetworkMacTest, AsksForNothingCachedAndForTheTimeLimit) {
  Transfer();
  EXPECT_EQ(StandIn::cachePolicy, 1u);
  EXPECT_EQ(StandIn::timeoutInterval, 90);
}

TEST_F(NetworkMacTest, TellsOfEveryTransferThatTheSessionDoesNotMake) {
  for (const Mood mood : {Mood::kMakesNoTask, Mood::kRaises}) {
    EXPECT_EQ(Transfer(mood).failure, "The transfer could not be started.");
  }
  EXPECT_TRUE(layer.calls.empty());
}

TEST_F(NetworkMacTest, MakesDoWithAnAnswerThatIsNotHttp) {
  layer.answer = {true, "body", "", 404};
  const Network::Outcome outcome = Transfer(Mood::kIsNotHttp);
  EXPECT_EQ(outcome.body, "body");
  EXPECT_EQ(outcome.status, 0);
}

TEST_F(NetworkMacTest, KeepsNothingAliveBeyondATransfer) {
  int before = 0;
  for (const bool first : {true, false}) {  // the runtime keeps some objects from the first time
    for (const Mood mood : {Mood::kWilling, Mood::kMakesNoTask, Mood::kRaises}) {
      FakeUrlLayer other;
      other.answer = {true, "body", "", 200};
      Transfer(mood);
    }
    if (first) before = StandIn::FoundationObjects();
  }
  EXPECT_EQ(StandIn::FoundationObjects(), before);
}

}  // namespace
