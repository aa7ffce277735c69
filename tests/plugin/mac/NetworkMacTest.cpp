// The HTTP calls on the URL layer of macOS, over a stand-in for the URL session: the requests, and the results for
// every end of a transfer.
#include "net/Network.h"

#include <gtest/gtest.h>

#include <fstream>

#include "plugin/faults/Allocations.h"
#include "plugin/mac/standin/StandIn.h"
#include "support/FakeUrlLayer.h"
#include "support/FolderTest.h"

using namespace std::chrono_literals;
using namespace std::string_literals;

static std::chrono::milliseconds g_waitLimit = 1h;
std::chrono::milliseconds Network::TransferTimeLimit() { return 90s; }
std::chrono::milliseconds Network::WaitTimeLimit() { return g_waitLimit; }

namespace {

using StandIn::Mood;

constexpr char kUrl[] = "https://a.example/path?key=a%20b";

struct NetworkMacTest : FolderTest {
  ~NetworkMacTest() override { StandIn::mood = Mood::kWilling; }

  FakeUrlLayer layer;
  std::string response, error;
};

TEST_F(NetworkMacTest, SendsTheRequestOfEachCall) {
  const std::string bytes = "\0\r\n\xFF<x/>"s, file = folder_ + "/file";
  std::ofstream(file, std::ios::binary) << bytes;
  EXPECT_TRUE(Network::Post(kUrl, bytes, response, error));
  EXPECT_TRUE(Network::Post(kUrl, "", response, error));
  EXPECT_TRUE(Network::Get(kUrl, response, error));
  EXPECT_TRUE(Network::PostFile(kUrl, file, response, error));
  const std::string post = std::string("POST ") + kUrl,
                    json = "\nAccept: application/json\nContent-Type: application/json\n\n";
  EXPECT_EQ(layer.calls, (std::vector<std::string>{post + json + bytes, post + json,
                                                   std::string("GET ") + kUrl + "\nAccept: application/json\n\n",
                                                   post + "\nContent-Type: application/octet-stream\n\n" + bytes}));
  EXPECT_EQ(StandIn::cachePolicy, 1u) << "an answer from the cache";
  EXPECT_EQ(StandIn::timeoutInterval, 90);
  std::string body(1 << 20, 'x');
  const void* const address = body.data();
  EXPECT_TRUE(Network::Post(kUrl, std::move(body), response, error));
  EXPECT_EQ(layer.bodyAddress, address) << "a large body is not copied";
}

TEST_F(NetworkMacTest, ReportsHowTheTransferEnded) {
  const std::string notStarted = "ERROR: The transfer could not be started.";
  const struct {
    Network::Outcome outcome;
    bool result;
    std::string response, error;
    Mood mood = Mood::kWilling;
  } cases[] = {
      {{false, "", "", 204}, true, "old response", "old error"},
      {{true, "moved", "", 399}, true, "moved", "old error"},
      {{true, "{\"error\":\"x\"}", "", 400}, false, "{\"error\":\"x\"}", "ERROR: HTTP 400 — {\"error\":\"x\"}"},
      {{false, "", "", 503}, false, "old response", "ERROR: HTTP 503 — "},
      {{false, "", "Verbindung verloren – Größe", 0}, false, "old response", "ERROR: Verbindung verloren – Größe"},
      {{true, "not HTTP", "", 404}, true, "not HTTP", "old error", Mood::kIsNotHttp},
      {{}, false, "old response", notStarted, Mood::kMakesNoTask},
      {{}, false, "old response", notStarted, Mood::kRaises},
  };
  for (const auto& c : cases) {
    layer.answer = c.outcome;
    StandIn::mood = c.mood;
    response = "old response";
    error = "old error";
    EXPECT_EQ(Network::Get(kUrl, response, error), c.result) << c.error;
    EXPECT_EQ(response, c.response) << c.error;
    EXPECT_EQ(error, c.error);
  }
}

TEST_F(NetworkMacTest, GivesUpAfterTheLimitAndTakesALateAnswer) {
  std::promise<void> givenUp;
  layer.before = givenUp.get_future().share();
  g_waitLimit = 1ms;
  EXPECT_FALSE(Network::Get(kUrl, response, error));
  EXPECT_EQ(error, "ERROR: Request timed out.");
  givenUp.set_value();
  g_waitLimit = 1h;
}

TEST_F(NetworkMacTest, AcceptsOnlyUrlsThatFoundationAccepts) {
  for (const bool isMacOS14 : {false, true}) {
    if (isMacOS14) StandIn::UpgradeToMacOS14();
    EXPECT_TRUE(Network::IsURL(kUrl));
    for (const char* text : {"http://a.example/a b", "http://a.example/\xC3", "\xFF"}) {
      EXPECT_FALSE(Network::IsURL(text)) << text << isMacOS14;
    }
  }
}

TEST_F(NetworkMacTest, KeepsNothingAliveBeyondATransfer) {
  const auto transferInEveryMood = [this] {
    for (const Mood mood : {Mood::kWilling, Mood::kMakesNoTask, Mood::kRaises}) {
      FakeUrlLayer each;
      StandIn::mood = mood;
      Network::Post(kUrl, "body", response, error);
    }
  };
  EXPECT_EQ(StandIn::ObjectsLeftBy(transferInEveryMood), 0);
  EXPECT_EQ(StandIn::semaphores, 0);
}

TEST_F(NetworkMacTest, SurvivesEveryFailingAllocation) {
  const std::string longText(100, 'x');
  for (const Network::Outcome& answer : {Network::Outcome{true, longText, "", 200}, {false, "", longText, 0}}) {
    const auto post = [&] {
      FakeUrlLayer each;  // whose own allocations are the same every time
      each.answer = answer;
      std::string text, failure;
      return Network::Post(kUrl, "body", text, failure) ? text : failure;
    };
    allocations::FailInTurn(post, [&](const std::string& result) {
      EXPECT_TRUE(result.starts_with("ERROR: ") || (answer.hasBody && result == longText)) << result;
    });
  }
}

}  // namespace
