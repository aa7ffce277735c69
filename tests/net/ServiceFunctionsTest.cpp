// The four functions that talk to a service: what they send, byte for byte, and what the calculation gets.
#include "net/ServiceFunctions.h"

#include <gtest/gtest.h>

#include <fstream>
#include <string>
#include <vector>

#include "tests/support/FakePasteboard.h"
#include "tests/support/FakeUrlLayer.h"
#include "tests/support/FolderTest.h"
#include "tests/support/ScriptedHost.h"

namespace {

constexpr char kUrl[] = "http://a.example/any?x=1";

class ServiceFunctions : public FolderTest {
 protected:
  ServiceFunctions() {
    FakePasteboard::Current() = &pasteboard_;
    layer_.answer = {true, "an answer", "", 200};
    pasteboard_.Replace({{"Mac-XMSS", "<fmxmlsnippet a=\"1\"/>"}});
  }

  std::string Write(const std::string& name, const std::string& bytes) const {
    std::ofstream(folder_ + "/" + name, std::ios::binary) << bytes;
    return folder_ + "/" + name;
  }

  ScriptedHost host_;
  FakePasteboard pasteboard_;
  FakeUrlLayer layer_;
};

struct Case {
  fmx::ExtPluginType handler;
  std::vector<std::string> arguments;
  std::string result;
  std::string body;
};

TEST_F(ServiceFunctions, SendWhatTheyAreForAndGiveTheAnswer) {
  const std::string pushed = R"({"licenseKey":"K","xmlType":"XMSS","xmlContent":"<fmxmlsnippet a=\"1\"/>","label":")";
  const Case cases[] = {
      {Do_HTTPPost, {kUrl, "no JSON: ä"}, "an answer", "no JSON: ä"},
      {Do_PushSnapshot,
       {kUrl, Write("a\"b.xml", "<x/>\n")},
       "an answer",
       R"({"content":"PHgvPgo=","filename":"a\"b.xml"})"},
      {Do_PushSnapshot, {kUrl, Write("empty", "")}, "an answer", R"({"content":"","filename":"empty"})"},
      {Do_PushScript, {"K", kUrl, "XMSS"}, "OK", pushed + "\"}"},
      {Do_PushScript, {"K", kUrl, "XMSS", "L\t1"}, "OK", pushed + R"(L\t1"})"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(CallHandler(c.handler, c.arguments), c.result);
    EXPECT_EQ(layer_.calls.back().url, kUrl);
    EXPECT_EQ(layer_.calls.back().headers.at("Content-Type"), "application/json");
    EXPECT_EQ(layer_.calls.back().body, c.body);
  }
}

TEST_F(ServiceFunctions, UploadFileSendsAForm) {
  EXPECT_EQ(CallHandler(Do_UploadFile, {kUrl, "key \"1\"", "näme.xml", Write("a file", "<x/>")}), "an answer");
  EXPECT_EQ(layer_.calls.at(0).url, kUrl);
  const std::string& body = layer_.calls.at(0).body;
  for (const char* part : {"name=\"licenseKey\"\r\n\r\nkey \"1\"\r\n", "name=\"filename\"\r\n\r\nnäme.xml\r\n",
                           "application/xml\r\n\r\n<x/>\r\n"}) {
    EXPECT_NE(body.find(part), body.npos) << body;
  }
}

TEST_F(ServiceFunctions, WhatCannotBeSentIsToldAndNothingIsSent) {
  const std::string missing = folder_ + "/missing";
  const Case cases[] = {
      {Do_HTTPPost, {"", ""}, "ERROR: url is empty.", ""},
      {Do_HTTPPost, {kUrl, ""}, "ERROR: jsonBody is empty.", ""},
      {Do_HTTPPost, {"no url", "{}"}, "ERROR: Invalid URL: no url", ""},
      {Do_UploadFile, {"no url", "", "", ""}, "ERROR: Invalid URL: no url", ""},
      {Do_UploadFile, {kUrl, "", "", ""}, "ERROR: Could not read file: ", ""},
      {Do_UploadFile, {kUrl, "K", "n", missing}, "ERROR: Could not read file: " + missing, ""},
      {Do_PushSnapshot, {"", ""}, "ERROR: ingestUrl is empty.", ""},
      {Do_PushSnapshot, {kUrl, ""}, "ERROR: xmlPath is empty.", ""},
      {Do_PushSnapshot, {kUrl, missing}, "ERROR: Could not open file: " + missing, ""},
      {Do_PushSnapshot, {"no url", Write("f", "x")}, "ERROR: Invalid URL: no url", ""},
      {Do_PushScript, {"", "", ""}, "ERROR: licenseKey is empty.", ""},
      {Do_PushScript, {"K", "", ""}, "ERROR: bridgeUrl is empty.", ""},
      {Do_PushScript, {"K", kUrl, ""}, "ERROR: xmlType is empty.", ""},
      {Do_PushScript, {"K", "no url", "XMSS"}, "ERROR: Invalid URL: no url", ""},
      {Do_PushScript, {"K", kUrl, "XMSC"}, "ERROR: No XMSC XML on clipboard. Copy the FM object first.", ""},
  };
  for (const auto& c : cases) EXPECT_EQ(CallHandler(c.handler, c.arguments), c.result);
  EXPECT_TRUE(layer_.calls.empty());
}

}  // namespace
