// Varnix.Register: what is asked of the service, and what a success and a failure leave behind.
#include "bridge/Register.h"

#include <gtest/gtest.h>

#include <cstdlib>

#include "bridge/Background.h"
#include "bridge/BridgeState.h"
#include "core/Prefs.h"
#include "core/Product.h"
#include "net/VersionCheck.h"
#include "tests/support/FakeUrlLayer.h"
#include "tests/support/FolderTest.h"
#include "tests/support/ScriptedHost.h"

namespace {

std::vector<std::function<void()>> g_jobs;

}  // namespace

void bg(std::function<void()> job) noexcept { g_jobs.push_back(std::move(job)); }

namespace {

class Register : public FolderTest {
 protected:
  Register() {
    setenv("XDG_CONFIG_HOME", folder_.c_str(), 1);
    network_.answer = {.hasBody = true, .body = "anything", .failure = {}, .status = 200};
    host_.answers = {{"Get(FileName)", "Sales"}};
    g_licenseKey = g_registeredFileName = "";
    g_baseUrl = "http://before";
    g_registered = false;
  }
  ~Register() override { g_jobs.clear(); }

  static std::string Call(const std::vector<std::string>& arguments) { return CallHandler(Do_Register, arguments); }

  FakeUrlLayer network_;
  ScriptedHost host_;
};

TEST_F(Register, ChecksItsArgumentsInOrderBeforeAnythingIsSent) {
  const std::pair<std::vector<std::string>, std::string> cases[] = {
      {{}, "ERROR: email is empty."},
      {{"", "K1", "M1"}, "ERROR: email is empty."},
      {{"E1", "", ""}, "ERROR: licenseKey is empty."},
      {{"E1", "K1", "", "http://x"}, "ERROR: machineId is empty."},
  };
  for (const auto& [arguments, error] : cases) EXPECT_EQ(Call(arguments), error);
  EXPECT_TRUE(network_.calls.empty());
}

TEST_F(Register, PostsTheFourMembersToTheOriginThatIsGiven) {
  const std::pair<std::vector<std::string>, std::string> cases[] = {
      {{"E1", "K1", "M1"}, kDefaultBaseUrl},
      {{"E1", "K1", "M1", ""}, kDefaultBaseUrl},
      {{"E1", "K1", "M1", "http://localhost:8080/"}, "http://localhost:8080/"},
  };
  for (const auto& [arguments, baseUrl] : cases) {
    EXPECT_EQ(Call(arguments), "OK");
    const auto& call = network_.calls.back();
    EXPECT_EQ(call.url, baseUrl + "/api/bridge/register");
    EXPECT_EQ(call.method, "POST");
    EXPECT_EQ(call.headers.at("Content-Type"), "application/json");
    EXPECT_EQ(call.body, R"({"email":"E1","licenseKey":"K1","machineId":"M1","pluginVersion":"1.6.16"})");
    EXPECT_EQ(g_baseUrl, baseUrl);
    EXPECT_EQ(Prefs::LoadBaseUrl(), baseUrl);
  }
  Call({" a\"b\\ ", "K\n", "\x01é", "http://x"});
  EXPECT_EQ(network_.calls.back().body,
            R"({"email":" a\"b\\ ","licenseKey":"K\n","machineId":"\u0001é","pluginVersion":"1.6.16"})");
}

TEST_F(Register, ASuccessSignsInStoresTheSignInAndStartsAVersionCheck) {
  EXPECT_EQ(Call({"E1", "K1", "M1", "http://x"}), "OK");
  EXPECT_TRUE(g_registered);
  EXPECT_EQ(g_licenseKey, "K1");
  EXPECT_EQ(Prefs::LoadLicenseKey(), "K1");
  EXPECT_EQ(g_registeredFileName, "Sales");
  ASSERT_EQ(g_jobs.size(), 1u);
  g_jobs[0]();
  g_jobs.clear();
  EXPECT_EQ(network_.calls.back().url, "http://x/api/plugin/version");
  EXPECT_FALSE(g_versionCheckInFlight);

  host_.answers.clear();
  EXPECT_EQ(Call({"E2", "K2", "M1", "http://y"}), "OK");
  EXPECT_EQ(g_licenseKey + g_baseUrl, "K2http://y") << "signing in anew replaces the account";
  EXPECT_EQ(g_registeredFileName, "Sales") << "a file without a name leaves the earlier one";
}

TEST_F(Register, AFailureLeavesTheEarlierSignInInForce) {
  Call({"E1", "K1", "M1", "http://x"});
  g_jobs.clear();
  host_.answers = {{"Get(FileName)", "Other"}};
  const std::pair<Network::Outcome, std::string> cases[] = {
      {{.hasBody = true, .body = "bad \"key\"", .failure = {}, .status = 401}, "ERROR: HTTP 401 — bad \"key\""},
      {{.hasBody = false, .body = {}, .failure = "no route", .status = 0}, "ERROR: no route"},
  };
  for (const auto& [answer, error] : cases) {
    network_.answer = answer;
    EXPECT_EQ(Call({"E2", "K2", "M2", "http://y"}), error);
  }
  EXPECT_EQ(Call({"E2", "K2", "M2", "no url"}), "ERROR: Invalid URL: no url/api/bridge/register");
  EXPECT_TRUE(g_registered);
  EXPECT_EQ(g_licenseKey + g_baseUrl + g_registeredFileName, "K1http://xSales");
  EXPECT_EQ(Prefs::LoadLicenseKey() + Prefs::LoadBaseUrl(), "K1http://x");
  EXPECT_TRUE(g_jobs.empty());
}

}  // namespace
