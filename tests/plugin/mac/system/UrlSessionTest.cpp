// The HTTP calls on the shared URL session, against well-behaved and misbehaving servers.
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <fstream>
#include <future>
#include <memory>

#include "net/Network.h"
#include "net/Transfer.h"
#include "support/FolderTest.h"
#include "support/LoopbackServer.h"

using namespace std::chrono_literals;
using Connection = LoopbackServer::Connection;

// Shortened by the tests with a silent server.
static std::atomic<std::chrono::milliseconds> g_transferLimit{60s}, g_waitLimit{60s};
std::chrono::milliseconds Network::TransferTimeLimit() { return g_transferLimit; }
std::chrono::milliseconds Network::WaitTimeLimit() { return g_waitLimit; }

namespace {

struct UrlSession : FolderTest {
  std::string Get(const std::string& url) {
    std::string response, error;
    return Network::Get(url, response, error) ? response : error;
  }
};

TEST_F(UrlSession, ReportsEveryEndOfATransfer) {
  const std::string binary("a\0\xFFz", 4), many(16 << 20, 'x');
  const std::string gzip("\x1f\x8b\x08\0\0\0\0\0\x02\x03\x4b\xca\x4f\xa9\x04\0\xb2\x0b\xa8\xdb\x04\0\0\0", 24);
  const struct {
    const char* name;
    std::string answer;
    std::string result = "ERROR: ";  // only its start if it ends with a space
  } cases[] = {
      {"zero bytes and no UTF-8", WholeAnswer("200 OK", binary), binary},
      {"204 without a body", "HTTP/1.1 204 No Content\r\n\r\n", ""},
      {"400", WholeAnswer("400 Bad Request", "body"), "ERROR: HTTP 400 — body"},
      {"HTTP/1.0 without a length", "HTTP/1.0 200 OK\r\n\r\nuntil the end", "until the end"},
      {"closed at once", ""},
      {"16 MB", WholeAnswer("200 OK", many), many},
      {"gzip", WholeAnswer("200 OK\r\nContent-Encoding: gzip", gzip), "body"},
  };
  for (const auto& c : cases) {
    LoopbackServer server(Sending(c.answer));
    const std::string result = Get(server.Url("/"));
    EXPECT_TRUE(c.result.ends_with(' ') ? result.starts_with(c.result) && result.size() > 7 : result == c.result)
        << c.name << ": " << result.substr(0, 100);
  }
  const std::string closed = LoopbackServer(Sending("")).Url();
  EXPECT_TRUE(Get(closed).starts_with("ERROR: "));
}

TEST_F(UrlSession, SendsTheRequestOfEachCall) {
  LoopbackServer server(Answering([](const std::string&) { return CannedAnswer{}; }));
  const std::string bytes("\0\r\n\xFF<x/>", 8), file = folder_ + "/file", url = server.Url("/path?key=a%20b");
  std::ofstream(file, std::ios::binary) << bytes;
  std::string response, error;
  EXPECT_TRUE(Network::Post(url, bytes, response, error)) << error;
  EXPECT_TRUE(Network::PostFile(url, file, response, error)) << error;
  EXPECT_TRUE(Network::Get(url, response, error)) << error;
  const struct {
    std::string line, type, body;
  } expected[] = {{"POST /path?key=a%20b", "Content-Type: application/json\r\n", bytes},
                  {"POST /path?key=a%20b", "Content-Type: application/octet-stream\r\n", bytes},
                  {"GET /path?key=a%20b", "Accept: application/json\r\n", ""}};
  const auto requests = server.Requests();
  ASSERT_EQ(requests.size(), std::size(expected));
  for (std::size_t i = 0; i < requests.size(); ++i) {
    EXPECT_EQ(RequestLine(requests[i]), expected[i].line);
    EXPECT_NE(requests[i].find(expected[i].type), std::string::npos) << requests[i];
    EXPECT_EQ(RequestBody(requests[i]), expected[i].body);
  }
}

TEST_F(UrlSession, LimitsHowLongASilentOrDrippingServerTakes) {
  for (const auto behave : {NeverAnswer, Drip}) {
    LoopbackServer server(behave);
    g_waitLimit = 50ms;
    EXPECT_EQ(Get(server.Url()), "ERROR: Request timed out.");
    g_waitLimit = 60s;
  }
  LoopbackServer server(NeverAnswer);
  g_transferLimit = 1s;
  const std::string result = Get(server.Url());
  g_transferLimit = 60s;
  EXPECT_TRUE(result.starts_with("ERROR: ") && result != "ERROR: Request timed out.") << result;
}

TEST_F(UrlSession, AcceptsOnlyUrlsThatFoundationAccepts) {
  EXPECT_TRUE(Network::IsURL("https://a.example/path?key=a%20b"));
  for (const char* text : {"http://a.example/a b", "http://a.example/\xC3", "\xFF"}) {
    EXPECT_FALSE(Network::IsURL(text)) << text;
  }
}

TEST_F(UrlSession, KeepsNothingOfAFinishedTransfer) {
  LoopbackServer server(Sending(WholeAnswer("200 OK", "body")));
  std::promise<void> gone;
  std::shared_ptr<void> kept(nullptr, [&](void*) { gone.set_value(); });
  Network::StartTransfer({server.Url(), "GET", {}, ""}, [kept = std::move(kept)](const Network::Outcome&) {});
  EXPECT_EQ(gone.get_future().wait_for(10s), std::future_status::ready);
}

}  // namespace
