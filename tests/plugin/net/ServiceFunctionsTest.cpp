// The functions that talk to a service: what they send, byte for byte, and their results.
#include "net/ServiceFunctions.h"

#include <fstream>
#include <regex>

#include "bridge/LivePush.h"
#include "bridge/SignIn.h"
#include "plugin/bridge/BridgeTest.h"
#include "support/Rows.h"

namespace {

constexpr char kUrl[] = "http://a.example/any?x=1";

class ServiceFunctions : public BridgeTest {
 protected:
  ServiceFunctions() {
    answers[""] = {true, "an answer", "", 200};
    pasteboard.Replace({{"Mac-XMSS", "<fmxmlsnippet a=\"1\"/>"}});
    std::ofstream(file_) << "<x/>\n";
  }

  const std::string file_ = folder_ + "/a\"b.xml";
};

TEST_F(ServiceFunctions, SendTheirRequestAndReturnTheAnswer) {
  const std::string pushed = R"({"licenseKey":"K","xmlType":"XMSS","xmlContent":"<fmxmlsnippet a=\"1\"/>","label":")";
  const struct {
    fmx::ExtPluginType handler;
    Texts arguments;
    std::string result, body;
  } cases[] = {
      {Do_HTTPPost, {kUrl, "no JSON: ä"}, "an answer", "no JSON: ä"},
      {Do_PushSnapshot, {kUrl, file_}, "an answer", R"({"content":"PHgvPgo=","filename":"a\"b.xml"})"},
      {Do_PushScript, {"K", kUrl, "XMSS"}, "OK", pushed + "\"}"},
      {Do_PushScript, {"K", kUrl, "XMSS", "L\t1"}, "OK", pushed + R"(L\t1"})"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(CallHandler(c.handler, c.arguments), c.result);
    EXPECT_EQ(Effects(), Texts{std::string("POST ") + kUrl + " " + c.body});
  }
}

TEST_F(ServiceFunctions, UploadFileSendsAFormWithItsOwnBoundary) {
  for (int i = 0; i < 2; ++i) EXPECT_EQ(CallHandler(Do_UploadFile, {kUrl, "KEY-1", "a \"b\".xml", file_}), "an answer");
  ASSERT_EQ(requests.size(), 2u);
  EXPECT_NE(requests[0].body, requests[1].body);
  EXPECT_EQ(requests[0].url, kUrl);
  const std::string boundary = requests[0].body.substr(2, 22), start = "--" + boundary;
  EXPECT_TRUE(std::regex_match(boundary, std::regex("VarnixBoundary[0-9A-F]{8}"))) << boundary;
  const std::pair<std::string, std::string> type = {"Content-Type", "multipart/form-data; boundary=" + boundary};
  EXPECT_EQ(requests[0].headers, std::vector{type});
  EXPECT_EQ(requests[0].body,
            start + "\r\nContent-Disposition: form-data; name=\"licenseKey\"\r\n\r\nKEY-1\r\n" + start +
                "\r\nContent-Disposition: form-data; name=\"filename\"\r\n\r\na \"b\".xml\r\n" + start +
                "\r\nContent-Disposition: form-data; name=\"file\"; filename=\"a \"b\".xml\"\r\n"
                "Content-Type: application/xml\r\n\r\n<x/>\n\r\n" +
                start + "--\r\n");
}

TEST_F(ServiceFunctions, AllowLongAnswersLikePollsAndUploadsAlone) {
  answers.clear();
  CarryOut("LIST_FILES");
  CallHandler(Do_Register, {"E1", "K1", "M1", "http://s"});
  CallHandler(Do_LivePush, {file_});
  CallHandler(Do_UploadFile, {kUrl, "K", "n", file_});
  CallHandler(Do_HTTPPost, {kUrl, "{}"});
  RunJobs();
  std::map<std::string, std::size_t> limits;
  for (const auto& request : requests) limits[request.url.substr(0, request.url.find('?'))] = request.answerLimit;
  constexpr std::size_t kShort = 1 << 20, kLong = 512 << 20;
  const std::map<std::string, std::size_t> expected = {{"http://s/api/bridge/command/c1/complete", kShort},
                                                       {"http://s/api/bridge/command/next", kLong},
                                                       {"http://s/api/bridge/push", kShort},
                                                       {"http://s/api/bridge/register", kShort},
                                                       {"http://s/api/live/ingest/K1", kLong},
                                                       {"http://s/api/plugin/version", kShort},
                                                       {"http://a.example/any", kLong}};
  EXPECT_EQ(limits, expected);
}

TEST_F(ServiceFunctions, ReportWhatCannotBeSentAndSendNothing) {
  const std::map<std::string, fmx::ExtPluginType> functions = {
      {"HTTPPost", Do_HTTPPost},         {"LivePush", Do_LivePush}, {"PushScript", Do_PushScript},
      {"PushSnapshot", Do_PushSnapshot}, {"Register", Do_Register}, {"UploadFile", Do_UploadFile},
  };
  ExpectRows(DATA "/unsendable.txt", [&](const auto& call) { return CallRow(functions, call); });
  EXPECT_TRUE(requests.empty() && jobs.empty());
}

}  // namespace
