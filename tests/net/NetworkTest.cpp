// What the HTTP calls send, and what they make of every end of a transfer. FakeUrlLayer answers behind the URL layer of
// macOS.
#include "net/Network.h"

#include <gtest/gtest.h>

#include <fstream>
#include <regex>

#include "tests/support/FakeUrlLayer.h"
#include "tests/support/FolderTest.h"

using namespace std::chrono_literals;
using namespace std::string_literals;

std::chrono::milliseconds Network::TransferTimeLimit() { return 90s; }
std::chrono::milliseconds Network::WaitTimeLimit() { return 1h; }

namespace {

constexpr char kUrl[] = "https://a.example/path?key=a%20b";

class NetworkTest : public FolderTest {
 protected:
  NetworkTest() { std::ofstream(file_, std::ios::binary) << bytes_; }

  const std::string file_ = folder_ + "/file";
  const std::string bytes_ = "\0\r\n--VarnixBoundary\xFF"s;
  FakeUrlLayer layer_;
  std::string response_, error_;
};

TEST_F(NetworkTest, SendsWhatEachCallIsFor) {
  EXPECT_TRUE(Network::Post(kUrl, bytes_, response_, error_));
  EXPECT_TRUE(Network::Post(kUrl, "", response_, error_));
  EXPECT_TRUE(Network::Get(kUrl, response_, error_));
  EXPECT_TRUE(Network::PostFile(kUrl, file_, response_, error_));
  using Headers = std::map<std::string, std::string>;
  const Headers json = {{"Content-Type", "application/json"}, {"Accept", "application/json"}};
  const struct {
    std::string method;
    Headers headers;
    std::string body;
  } expected[] = {{"POST", json, bytes_},
                  {"POST", json, ""},
                  {"GET", {{"Accept", "application/json"}}, ""},
                  {"POST", {{"Content-Type", "application/octet-stream"}}, bytes_}};
  ASSERT_EQ(layer_.calls.size(), std::size(expected));
  for (std::size_t i = 0; i < std::size(expected); ++i) {
    EXPECT_EQ(layer_.calls[i].url, kUrl);
    EXPECT_EQ(layer_.calls[i].method, expected[i].method);
    EXPECT_EQ(layer_.calls[i].headers, expected[i].headers);
    EXPECT_EQ(layer_.calls[i].body, expected[i].body);
  }
}

TEST_F(NetworkTest, SendsAFormWithABoundaryOfItsOwn) {
  for (int i = 0; i < 2; ++i) {
    EXPECT_TRUE(Network::PostMultipart(kUrl, "KEY-1", "a \"b\".xml", file_, response_, error_));
    const auto& call = layer_.calls.back();
    EXPECT_EQ(call.method + " " + call.url, "POST "s + kUrl);
    ASSERT_EQ(call.headers.size(), 1u);
    const std::string type = call.headers.at("Content-Type");
    ASSERT_TRUE(std::regex_match(type, std::regex("multipart/form-data; boundary=VarnixBoundary[0-9A-F]{8}"))) << type;
    const std::string start = "--" + type.substr(type.find('=') + 1);
    EXPECT_EQ(call.body, start + "\r\nContent-Disposition: form-data; name=\"licenseKey\"\r\n\r\nKEY-1\r\n" + start +
                             "\r\nContent-Disposition: form-data; name=\"filename\"\r\n\r\na \"b\".xml\r\n" + start +
                             "\r\nContent-Disposition: form-data; name=\"file\"; filename=\"a \"b\".xml\"\r\n"
                             "Content-Type: application/xml\r\n\r\n" +
                             bytes_ + "\r\n" + start + "--\r\n");
  }
  EXPECT_NE(layer_.calls[0].headers, layer_.calls[1].headers);
}

TEST_F(NetworkTest, TellsHowTheTransferEnded) {
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

TEST_F(NetworkTest, HandsALargeBodyOnWithoutACopy) {
  std::string body(1 << 20, 'x');
  const void* address = body.data();
  EXPECT_TRUE(Network::Post(kUrl, std::move(body), response_, error_));
  EXPECT_EQ(layer_.calls.at(0).bodyAddress, address);
}

}  // namespace
