// The functions that talk to a service: what they send, byte for byte, and their results.
#include "net/ServiceFunctions.h"

#include <fstream>
#include <regex>

#include "bridge/LivePush.h"
#include "bridge/SignIn.h"
#include "plugin/bridge/BridgeTest.h"
#include "support/Rows.h"

namespace {

const std::map<std::string, fmx::ExtPluginType> kFunctions = {
    {"HTTPPost", Do_HTTPPost},         {"LivePush", Do_LivePush}, {"PushScript", Do_PushScript},
    {"PushSnapshot", Do_PushSnapshot}, {"Register", Do_Register}, {"UploadFile", Do_UploadFile},
};

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
  const std::regex boundary("VarnixBoundary[0-9A-F]{8}");
  std::string earlier;
  ExpectRows(DATA "/sendable.txt", [&](const auto& call) {
    std::string sent = CallRow(kFunctions, Replaced(call, "{file}", file_)) + '\n';
    const Network::Request& request = requests.back();
    sent += request.method + (' ' + request.url) + '\n';
    for (const auto& [name, value] : request.headers) sent += name + ": " + value + '\n';
    EXPECT_NE(request.body, std::exchange(earlier, request.body)) << "a form has a boundary of its own";
    return std::regex_replace(sent + request.body, boundary, "{boundary}");
  });
}

TEST_F(ServiceFunctions, ReportWhatCannotBeSentAndSendNothing) {
  ExpectRows(DATA "/unsendable.txt", [&](const auto& call) { return CallRow(kFunctions, call); });
  EXPECT_TRUE(requests.empty() && jobs.empty());
}

}  // namespace
