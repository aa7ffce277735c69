// Whatever the service answers to polls: each line of the input is an answer, followed by the idle calls and jobs that
// it causes. Everything sent is JSON and goes to the account's own service, and no flag stays raised.
#include <algorithm>
#include <nlohmann/json.hpp>
#include <sstream>

#include "core/State.h"
#include "fuzz/Fuzz.h"
#include "net/VersionCheck.h"
#include "plugin/bridge/BridgeTest.h"

namespace {

class Bridge : public BridgeTest {
 public:
  void Answer(const std::string& answer) {
    host.answers = {{"Get(FileName)", "Sales"}, {"DatabaseNames", "Sales\rContacts"}};
    commands.push_back(answer);
    now += 3000;
    for (int step = 0; step < 3; ++step) Step();
    Check(!g_pollInFlight && !g_versionCheckInFlight);
    for (auto& request : requests) {
      Check(request.url.starts_with("http://s/"));
      // Bytes beyond ASCII are sent verbatim and need not be UTF-8.
      std::ranges::replace_if(
          request.body, [](unsigned char byte) { return byte >= 0x80; }, '?');
      Check(request.body.empty() || nlohmann::json::accept(request.body));
    }
    requests.clear();
  }

 private:
  void TestBody() override {}
};

}  // namespace

void Try(const std::string& input) {
  testing::GTEST_FLAG(break_on_failure) = true;
  Bridge bridge;
  std::istringstream answers(input);
  for (std::string answer; std::getline(answers, answer);) bridge.Answer(answer);
}
