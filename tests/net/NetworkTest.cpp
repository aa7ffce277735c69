// What the HTTP calls send, and what they make of every end of a transfer. The URL layer is another in each program
// that these tests are part of; FakeUrlLayer answers behind it.
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
constexpr char kNoUrl[] = "https://a.example/a b";

class NetworkTest : public FolderTest {
 protected:
  std::string Write(const std::string& bytes) const {
    std::ofstream(folder_ + "/file", std::ios::binary) << bytes;
    return folder_ + "/file";
  }

  FakeUrlLayer layer_;
  std::string response_ = "old response";
  std::string error_ = "old error";
};

TEST_F(NetworkTest, SendsWhatEachCallIsFor) {
  const std::string bytes = "\0\r\n\xFF<x/>"s;
  const std::string file = Write(bytes);
  EXPECT_TRUE(Network::Post(kUrl, bytes, response_, error_));
  EXPECT_TRUE(Network::Post(kUrl, "", response_, error_));
  EXPECT_TRUE(Network::Get(kUrl, response_, error_));
  EXPECT_TRUE(Network::PostFile(kUrl, file, response_, error_));
  using Headers = std::map<std::string, std::string>;
  const Headers json = {{"Content-Type", "application/json"}, {"Accept", "application/json"}};
  const struct {
    std::string method;
    Headers headers;
    std::string body;
  } expected[] = {{"POST", json, bytes},
                  {"POST", json, ""},
                  {"GET", {{"Accept", "application/json"}}, ""},
                  {"POST", {{"Content-Type", "application/octet-stream"}}, bytes}};
  ASSERT_EQ(layer_.calls.size(), std::size(expected));
  for (std::size_t i = 0; i < std::size(expected); ++i) {
    EXPECT_EQ(layer_.calls[i].url, kUrl);
    EXPECT_EQ(layer_.calls[i].method, expected[i].method);
    EXPECT_EQ(layer_.calls[i].headers, expected[i].headers);
    EXPECT_EQ(layer_.calls[i].body, expected[i].body);
  }
}

TEST_F(NetworkTest, SendsAFormWithABoundaryOfItsOwn) {
  const std::string bytes = "\0\r\n--VarnixBoundary\xFF"s;
  const std::string file = Write(bytes);
  EXPECT_TRUE(Network::PostMultipart(kUrl, "KEY-1", "a \"b\".xml", file, response_, error_));
  EXPECT_TRUE(Network::PostMultipart(kUrl, "KEY-1", "a \"b\".xml", file, response_, error_));
  ASSERT_EQ(layer_.calls.size(), 2u);
  for (const auto& call : layer_.calls) {
    EXPECT_EQ(call.url, kUrl);
    EXPECT_EQ(call.method, "POST");
    ASSERT_EQ(call.headers.size(), 1u);
    const std::string type = call.headers.at("Content-Type");
    std::smatch match;
    ASSERT_TRUE(std::regex_match(type, match, std::regex("multipart/form-data; boundary=(VarnixBoundary[0-9A-F]{8})")));
    const std::string boundary = match[1];
    EXPECT_EQ(call.body, "--" + boundary +
                             "\r\nContent-Disposition: form-data; name=\"licenseKey\"\r\n\r\nKEY-1\r\n--" + boundary +
                             "\r\nContent-Disposition: form-data; name=\"filename\"\r\n\r\na \"b\".xml\r\n--" +
                             boundary +
                             "\r\nContent-Disposition: form-data; name=\"file\"; filename=\"a \"b\".xml\"\r\n"
                             "Content-Type: application/xml\r\n\r\n" +
                             bytes + "\r\n--" + boundary + "--\r\n");
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
      {{true, "\0\xFF\r\n"s, "", 200}, true, "\0\xFF\r\n"s, "old error"},
      {{true, "", "", 204}, true, "", "old error"},
      {{false, "", "", 204}, true, "old response", "old error"},
      {{true, "moved", "", 399}, true, "moved", "old error"},
      {{true, "no status", "", 0}, true, "no status", "old error"},
      {{true, "{\"error\":\"x\"}", "", 404}, false, "{\"error\":\"x\"}", "ERROR: HTTP 404 — {\"error\":\"x\"}"},
      {{true, "", "", 400}, false, "", "ERROR: HTTP 400 — "},
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

TEST_F(NetworkTest, SendsNothingThatHasNoUrlOrNoFile) {
  const std::string missing = folder_ + "/missing", noUrl = "ERROR: Invalid URL: "s + kNoUrl;
  EXPECT_FALSE(Network::Get(kNoUrl, response_, error_));
  EXPECT_EQ(error_, noUrl);
  EXPECT_FALSE(Network::PostFile(kNoUrl, missing, response_, error_));
  EXPECT_EQ(error_, noUrl);
  EXPECT_FALSE(Network::PostFile(kUrl, missing, response_, error_));
  EXPECT_EQ(error_, "ERROR: Could not read file: " + missing);
  EXPECT_EQ(response_, "old response");
  EXPECT_TRUE(layer_.calls.empty());
}

TEST_F(NetworkTest, HandsALargeBodyOnWithoutACopy) {
  std::string body(1 << 20, 'x');
  const void* address = body.data();
  EXPECT_TRUE(Network::Post(kUrl, std::move(body), response_, error_));
  EXPECT_EQ(layer_.calls.at(0).bodyAddress, address);
}

}  // namespace
