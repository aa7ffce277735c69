// The four functions that talk to a service: what goes over the wire, byte for byte, and what the calculation gets.
#include "net/ServiceFunctions.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <string>

#include "clipboard/Clipboard.h"
#include "tests/support/FakePasteboard.h"
#include "tests/support/FolderTest.h"
#include "tests/support/LoopbackServer.h"
#include "tests/support/ScriptedHost.h"

namespace {

class ServiceFunctions : public FolderTest {
 protected:
  ServiceFunctions() { FakePasteboard::Current() = &pasteboard_; }

  std::string Write(const std::string& name, const std::string& bytes) const {
    std::ofstream(folder_ + "/" + name, std::ios::binary) << bytes;
    return folder_ + "/" + name;
  }

  /// The one request that has come, without the lines that say where to and what this libcurl can decode.
  std::string OneRequest() {
    EXPECT_EQ(server_.Requests().size(), 1u);
    std::string request = server_.Requests().at(0);
    for (const char* line : {"Host: ", "Accept-Encoding: "}) {
      const std::size_t start = request.find(line);
      request.erase(start, request.find("\r\n", start) + 2 - start);
    }
    return request;
  }

  static std::string JsonPost(const std::string& path, const std::string& body) {
    return "POST " + path +
           " HTTP/1.1\r\nContent-Type: application/json\r\nAccept: application/json\r\nContent-Length: " +
           std::to_string(body.size()) + "\r\n\r\n" + body;
  }

  ScriptedHost host_;
  FakePasteboard pasteboard_;
  int status_ = 200;
  LoopbackServer server_{Answering([this](const std::string&) { return CannedAnswer{status_, "an answer", ""}; })};
};

TEST_F(ServiceFunctions, HTTPPostSendsAnyBodyAndGivesTheAnswer) {
  EXPECT_EQ(CallHandler(Do_HTTPPost, {server_.Url("/any?x=1"), "no JSON: ä"}), "an answer");
  EXPECT_EQ(OneRequest(), JsonPost("/any?x=1", "no JSON: ä"));
}

TEST_F(ServiceFunctions, UploadFileSendsAForm) {
  const std::string bytes("\0\xFF<x/>\r\n--", 10);
  const std::string file = Write("a file", bytes);
  EXPECT_EQ(CallHandler(Do_UploadFile, {server_.Url("/upload"), "key \"1\"", "näme.xml", file}), "an answer");
  const std::string request = OneRequest();
  const std::size_t at = request.find("VarnixBoundary");
  const std::string boundary = request.substr(at, 22);
  EXPECT_EQ(boundary.find_first_not_of("0123456789ABCDEF", 14), std::string::npos);
  const std::string body = "--" + boundary +
                           "\r\nContent-Disposition: form-data; name=\"licenseKey\"\r\n\r\nkey \"1\"\r\n--" + boundary +
                           "\r\nContent-Disposition: form-data; name=\"filename\"\r\n\r\nnäme.xml\r\n--" + boundary +
                           "\r\nContent-Disposition: form-data; name=\"file\"; filename=\"näme.xml\"\r\nContent-Type: "
                           "application/xml\r\n\r\n" +
                           bytes + "\r\n--" + boundary + "--\r\n";
  EXPECT_EQ(request, "POST /upload HTTP/1.1\r\nAccept: */*\r\nContent-Type: multipart/form-data; boundary=" + boundary +
                         "\r\nContent-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body);
}

TEST_F(ServiceFunctions, PushSnapshotSendsTheFileInBase64) {
  EXPECT_EQ(CallHandler(Do_PushSnapshot, {server_.Url("/in"), Write("a\"b.xml", "<x/>\n")}), "an answer");
  EXPECT_EQ(OneRequest(), JsonPost("/in", R"({"content":"PHgvPgo=","filename":"a\"b.xml"})"));
}

TEST_F(ServiceFunctions, PushSnapshotOfAnEmptyFileHasNoContent) {
  CallHandler(Do_PushSnapshot, {server_.Url("/in"), Write("empty", "")});
  EXPECT_EQ(OneRequest(), JsonPost("/in", R"({"content":"","filename":"empty"})"));
}

TEST_F(ServiceFunctions, PushScriptSendsTheClipboardAndDropsTheAnswer) {
  pasteboard_.Replace({{"Mac-XMSS", "<fmxmlsnippet a=\"1\"/>"}});
  EXPECT_EQ(CallHandler(Do_PushScript, {"K", server_.Url("/push"), "XMSS"}), "OK");
  EXPECT_EQ(
      OneRequest(),
      JsonPost("/push", R"({"licenseKey":"K","xmlType":"XMSS","xmlContent":"<fmxmlsnippet a=\"1\"/>","label":""})"));
  EXPECT_EQ(CallHandler(Do_PushScript, {"K", server_.Url("/push"), "XMSS", "L\t1"}), "OK");
  EXPECT_TRUE(server_.Requests().at(1).ends_with(R"(,"label":"L\t1"})"));
}

TEST_F(ServiceFunctions, RefusalsAreGivenWithTheAnswer) {
  status_ = 403;
  pasteboard_.Replace({{"Mac-XMSS", "<fmxmlsnippet/>"}});
  const std::string file = Write("f", "x");
  const std::string url = server_.Url();
  EXPECT_EQ(CallHandler(Do_HTTPPost, {url, "{}"}), "ERROR: HTTP 403 — an answer");
  EXPECT_EQ(CallHandler(Do_UploadFile, {url, "K", "f", file}), "ERROR: HTTP 403 — an answer");
  EXPECT_EQ(CallHandler(Do_PushSnapshot, {url, file}), "ERROR: HTTP 403 — an answer");
  EXPECT_EQ(CallHandler(Do_PushScript, {"K", url, "XMSS"}), "ERROR: HTTP 403 — an answer");
}

TEST_F(ServiceFunctions, WhatCannotBeSentIsToldAndNothingIsSent) {
  const std::string url = server_.Url();
  const std::string missing = folder_ + "/missing";
  const struct {
    fmx::ExtPluginType handler;
    std::vector<std::string> arguments;
    std::string result;
  } cases[] = {
      {Do_HTTPPost, {"", ""}, "ERROR: url is empty."},
      {Do_HTTPPost, {url, ""}, "ERROR: jsonBody is empty."},
      {Do_HTTPPost, {"no url", "{}"}, "ERROR: Invalid URL: no url"},
      {Do_UploadFile, {"", "", "", ""}, "ERROR: Invalid URL: "},
      {Do_UploadFile, {url, "K", "n", missing}, "ERROR: Could not read file: " + missing},
      {Do_UploadFile, {url, "K", "n", folder_}, "ERROR: Could not read file: " + folder_},
      {Do_PushSnapshot, {"", ""}, "ERROR: ingestUrl is empty."},
      {Do_PushSnapshot, {url, ""}, "ERROR: xmlPath is empty."},
      {Do_PushSnapshot, {url, missing}, "ERROR: Could not open file: " + missing},
      {Do_PushSnapshot, {"no url", Write("f", "x")}, "ERROR: Invalid URL: no url"},
      {Do_PushScript, {"", "", ""}, "ERROR: licenseKey is empty."},
      {Do_PushScript, {"K", "", ""}, "ERROR: bridgeUrl is empty."},
      {Do_PushScript, {"K", url, ""}, "ERROR: xmlType is empty."},
      {Do_PushScript, {"K", url, "XMSC"}, "ERROR: No XMSC XML on clipboard. Copy the FM object first."},
  };
  for (const auto& c : cases) EXPECT_EQ(CallHandler(c.handler, c.arguments), c.result);
  EXPECT_EQ(server_.Requests().size(), 0u);
}

}  // namespace
