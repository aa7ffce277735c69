// The requests of the HTTP calls, and their results for every end of a transfer, on the URL layer of macOS with
// FakeUrlLayer below it.
#include "net/Network.h"

#include <gtest/gtest.h>

#include <fstream>

#include "support/FakeUrlLayer.h"
#include "support/FolderTest.h"

using namespace std::chrono_literals;
using namespace std::string_literals;

std::chrono::milliseconds Network::TransferTimeLimit() { return 90s; }
static std::chrono::milliseconds g_waitLimit = 1h;
std::chrono::milliseconds Network::WaitTimeLimit() { return g_waitLimit; }

namespace {

constexpr char kUrl[] = "https://a.example/path?key=a%20b";

class NetworkTest : public FolderTest {
 protected:
  FakeUrlLayer layer_;
  std::string response_, error_;
};

TEST_F(NetworkTest, SendsTheRequestOfEachCall) {
  const std::string bytes = "\0\r\n\xFF<x/>"s, file = folder_ + "/file";
  std::ofstream(file, std::ios::binary) << bytes;
  EXPECT_TRUE(Network::Post(kUrl, bytes, response_, error_));
  EXPECT_TRUE(Network::Post(kUrl, "", response_, error_));
  EXPECT_TRUE(Network::Get(kUrl, response_, error_));
  EXPECT_TRUE(Network::PostFile(kUrl, file, response_, error_));
  const std::map<std::string, std::string> json = {{"Content-Type", "application/json"},
                                                   {"Accept", "application/json"}};
  const std::vector<FakeUrlLayer::Call> expected = {
      {kUrl, "POST", json, bytes},
      {kUrl, "POST", json, ""},
      {kUrl, "GET", {{"Accept", "application/json"}}, ""},
      {kUrl, "POST", {{"Content-Type", "application/octet-stream"}}, bytes},
  };
  EXPECT_TRUE(layer_.calls == expected);
}

TEST_F(NetworkTest, ReportsHowTheTransferEnded) {
  const struct {
    Network::Outcome outcome;
    bool result;
    std::string response;
    std::string error;
  } cases[] = {
      {{false, "", "", 204}, true, "old response", "old error"},
      {{true, "moved", "", 399}, true, "moved", "old error"},
      {{true, "{\"error\":\"x\"}", "", 400}, false, "{\"error\":\"x\"}", "ERROR: HTTP 400 — {\"error\":\"x\"}"},
      {{false, "", "", 503}, false, "old response", "ERROR: HTTP 503 — "},
      {{false, "", "Verbindung verloren – Größe", 0}, false, "old response", "ERROR: Verbindung verloren – Größe"},
  };
  for (const auto& [outcome, result, response, error] : cases) {
    layer_.answer = outcome;
    response_ = "old response";
    error_ = "old error";
    EXPECT_EQ(Network::Get(kUrl, response_, error_), result) << error;
    EXPECT_EQ(response_, response) << error;
    EXPECT_EQ(error_, error);
  }
}

TEST_F(NetworkTest, GivesUpAfterTheLimitAndTakesALateAnswer) {
  std::promise<void> givenUp;
  layer_.before = givenUp.get_future().share();
  g_waitLimit = 1ms;
  EXPECT_FALSE(Network::Get(kUrl, response_, error_));
  EXPECT_EQ(error_, "ERROR: Request timed out.");
  givenUp.set_value();
  g_waitLimit = 1h;
}

TEST_F(NetworkTest, PassesALargeBodyOnWithoutACopy) {
  std::string body(1 << 20, 'x');
  const void* address = body.data();
  EXPECT_TRUE(Network::Post(kUrl, std::move(body), response_, error_));
  EXPECT_EQ(layer_.bodyAddress, address);
}

}  // namespace
