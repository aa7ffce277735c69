// The functions that talk to a service: what they send, byte for byte, and what the calculation gets.
#include "net/ServiceFunctions.h"

#include <fstream>

#include "bridge/LivePush.h"
#include "bridge/Register.h"
#include "tests/bridge/BridgeTest.h"

namespace {

constexpr char kUrl[] = "http://a.example/any?x=1";

class ServiceFunctions : public BridgeTest {
 protected:
  ServiceFunctions() {
    answers[""] = {true, "an answer", "", 200};
    pasteboard.Replace({{"Mac-XMSS", "<fmxmlsnippet a=\"1\"/>"}});
    std::ofstream(file_) << "<x/>\n";
  }

  const std::string file_ = folder_ + "/a\"b.xml", missing_ = folder_ + "/missing";
};

struct Case {
  fmx::ExtPluginType handler;
  Texts arguments;
  std::string result, body = "";
};

TEST_F(ServiceFunctions, SendWhatTheyAreForAndGiveTheAnswer) {
  const std::string pushed = R"({"licenseKey":"K","xmlType":"XMSS","xmlContent":"<fmxmlsnippet a=\"1\"/>","label":")";
  const Case cases[] = {
      {Do_HTTPPost, {kUrl, "no JSON: ä"}, "an answer", "no JSON: ä"},
      {Do_PushSnapshot, {kUrl, file_}, "an answer", R"({"content":"PHgvPgo=","filename":"a\"b.xml"})"},
      {Do_PushScript, {"K", kUrl, "XMSS"}, "OK", pushed + "\"}"},
      {Do_PushScript, {"K", kUrl, "XMSS", "L\t1"}, "OK", pushed + R"(L\t1"})"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(CallHandler(c.handler, c.arguments), c.result);
    EXPECT_EQ(Sent(), Texts{std::string("POST ") + kUrl + " " + c.body});
  }
  EXPECT_EQ(CallHandler(Do_UploadFile, {kUrl, "key", "näme.xml", file_}), "an answer");
  const std::string form = Sent().at(0);
  for (const char* part :
       {kUrl, "\"licenseKey\"\r\n\r\nkey\r\n", "\"filename\"\r\n\r\nnäme.xml\r\n", "\r\n<x/>\n\r\n"}) {
    EXPECT_NE(form.find(part), form.npos) << form;
  }
}

TEST_F(ServiceFunctions, WhatCannotBeSentIsToldAndNothingIsSent) {
  const Case cases[] = {
      {Do_HTTPPost, {kUrl, ""}, "ERROR: jsonBody is empty."},
      {Do_HTTPPost, {"no url", "{}"}, "ERROR: Invalid URL: no url"},
      {Do_UploadFile, {"no url", "", "", ""}, "ERROR: Invalid URL: no url"},
      {Do_UploadFile, {kUrl, "K", "n", missing_}, "ERROR: Could not read file: " + missing_},
      {Do_PushSnapshot, {kUrl, ""}, "ERROR: xmlPath is empty."},
      {Do_PushSnapshot, {kUrl, missing_}, "ERROR: Could not open file: " + missing_},
      {Do_PushScript, {"K", "", ""}, "ERROR: bridgeUrl is empty."},
      {Do_PushScript, {"K", kUrl, ""}, "ERROR: xmlType is empty."},
      {Do_PushScript, {"K", "no url", "XMSS"}, "ERROR: Invalid URL: no url"},
      {Do_LivePush, {""}, "ERROR: posixPath is empty."},
      {Do_Register, {"", "K2", "M1"}, "ERROR: email is empty."},
      {Do_Register, {"E1", "", ""}, "ERROR: licenseKey is empty."},
      {Do_Register, {"E1", "K2", "", kUrl}, "ERROR: machineId is empty."},
      {Do_Register, {"E1", "K2", "M1", "no url"}, "ERROR: Invalid URL: no url/api/bridge/register"},
      {Do_PushScript, {"K", kUrl, "XMSC"}, "ERROR: No XMSC XML on clipboard. Copy the FM object first."},
  };
  for (const auto& c : cases) EXPECT_EQ(CallHandler(c.handler, c.arguments), c.result);
  EXPECT_TRUE(requests.empty() && jobs.empty());
}

}  // namespace
