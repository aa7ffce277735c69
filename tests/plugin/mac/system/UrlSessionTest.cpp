// The HTTP calls on the shared URL session, against well-behaved and misbehaving servers.
#include "plugin/net/AnyUrlLayer.h"

namespace {

TEST(UrlSession, ReportsEveryEndOfATransfer) {
  ExpectEnds(kEndsEverywhere);
  const std::string closed = LoopbackServer(Sending("")).Url();
  EXPECT_TRUE(IsError(Get(closed)));
}

TEST(UrlSession, SendsTheRequestOfEachCall) {
  LoopbackServer server(Answering([](const std::string&) { return CannedAnswer{}; }));
  const std::string bytes("\0\r\n\xFF<x/>", 8), url = server.Url("/path?key=a%20b");
  std::string response, error;
  EXPECT_TRUE(Network::Post(url, bytes, response, error)) << error;
  EXPECT_TRUE(Network::Get(url, response, error)) << error;
  const auto requests = server.Requests();
  ASSERT_EQ(requests.size(), 2u);
  EXPECT_EQ(RequestLine(requests[0]), "POST /path?key=a%20b");
  EXPECT_EQ(RequestBody(requests[0]), bytes);
  EXPECT_NE(requests[0].find("Content-Type: application/json\r\n"), std::string::npos) << requests[0];
  EXPECT_EQ(RequestLine(requests[1]), "GET /path?key=a%20b");
}

TEST(UrlSession, LimitsHowLongASilentOrDrippingServerTakes) {
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
  EXPECT_TRUE(IsError(result) && result != "ERROR: Request timed out.") << result;
}

TEST(UrlSession, AcceptsOnlyUrlsThatFoundationAccepts) {
  EXPECT_TRUE(Network::IsURL("https://a.example/path?key=a%20b"));
  for (const char* text : {"http://a.example/a b", "http://a.example/\xC3", "\xFF"}) {
    EXPECT_FALSE(Network::IsURL(text)) << text;
  }
}

TEST(UrlSession, KeepsNothingOfAFinishedTransfer) { ExpectNothingKeptOfAFinishedTransfer(); }

}  // namespace
