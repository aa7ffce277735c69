// Whatever the service answers to polls: each line of the input is an answer, and with it all idle calls and jobs that
// follow. What is told to the service is JSON under the account's own address, and a poll is always due again.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <nlohmann/json.hpp>
#include <string>

#include "bridge/BridgeState.h"
#include "core/Utf8.h"
#include "net/VersionCheck.h"
#include "tests/bridge/BridgeTest.h"

namespace {

class Bridge : public BridgeTest {
 public:
  void Answer(const std::string& answer) {
    host.answers = {{"Get(FileName)", "Sales"}, {"DatabaseNames", "Sales\rContacts"}};
    CarryOut(answer);
    Idle();
    RunJobs();
    if (g_pollInFlight || g_versionCheckInFlight) std::abort();
    for (const auto& request : requests) {
      if (!request.url.starts_with("http://s/")) std::abort();
      const bool isJson = request.body.empty() || nlohmann::json::accept(request.body);
      if (!isJson && IsUtf8(answer)) std::abort();
    }
    requests.clear();
  }

 private:
  void TestBody() override {}
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  testing::GTEST_FLAG(break_on_failure) = true;
  Bridge bridge;
  const std::string input(reinterpret_cast<const char*>(data), size);
  for (std::size_t begin = 0; begin < size;) {
    const std::size_t end = std::min(input.find('\n', begin), size);
    bridge.Answer(input.substr(begin, end - begin));
    begin = end + 1;
  }
  return 0;
}
