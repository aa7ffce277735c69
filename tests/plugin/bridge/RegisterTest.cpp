// Varnix.Register: what is asked of the service, and what a success and a failure leave behind.
#include "bridge/SignIn.h"

#include <cstdlib>

#include "core/Prefs.h"
#include "core/Product.h"
#include "core/State.h"
#include "plugin/bridge/BridgeTest.h"

namespace {

class Register : public BridgeTest {
 protected:
  Register() {
    setenv("XDG_CONFIG_HOME", folder_.c_str(), 1);
    g_registered = false;
    g_registeredFileName.clear();
    host.answers = {{"Get(FileName)", "Sales"}};
  }
  static std::string Call(const Texts& arguments) { return CallHandler(Do_Register, arguments); }
  /// The sign-in in force, and the one that the next start restores.
  static Texts SignIn() { return {g_licenseKey, g_baseUrl, Prefs::LoadLicenseKey(), Prefs::LoadBaseUrl()}; }
};

TEST_F(Register, ASuccessSignsInAndIsStoredAndAFailureLeavesTheEarlierInForce) {
  const struct {
    Texts arguments;
    std::string baseUrl, members;
  } cases[] = {
      {{" a\"b\\ ", "K\n", "\x01é", ""},
       kDefaultBaseUrl,
       R"("email":" a\"b\\ ","licenseKey":"K\n","machineId":"\u0001é")"},
      {{"E1", "K3", "M1", "http://x/"}, "http://x/", R"("email":"E1","licenseKey":"K3","machineId":"M1")"},
  };
  for (const auto& [arguments, baseUrl, members] : cases) {
    EXPECT_EQ(Call(arguments), "OK");
    EXPECT_EQ(Sent(), Texts{"POST " + baseUrl + "/api/bridge/register {" + members + R"(,"pluginVersion":"1.6.16"})"});
    EXPECT_EQ(SignIn(), (Texts{arguments[1], baseUrl, arguments[1], baseUrl}));
    EXPECT_TRUE(g_registered);
    EXPECT_EQ(g_registeredFileName, "Sales") << "a file without a name leaves the earlier one";
    RunJobs();
    EXPECT_EQ(Sent(), Texts{"GET " + baseUrl + "/api/plugin/version "});
    host.answers.clear();
  }
  host.answers = {{"Get(FileName)", "Other"}};
  answers["/api/bridge/register"] = {true, "bad \"key\"", "", 401};
  EXPECT_EQ(Call({"E2", "K4", "M2", "http://y"}), "ERROR: HTTP 401 — bad \"key\"");
  EXPECT_EQ(SignIn(), (Texts{"K3", "http://x/", "K3", "http://x/"}));
  EXPECT_EQ(g_registeredFileName, "Sales");
  EXPECT_TRUE(g_registered && jobs.empty());
}

/// A sign-in within an evaluation, by a file called Sales.
TEST_F(Register, OneWithinAnEvaluationIsNotUndoneByTheResultOfThat) {
  const auto signInMeanwhile = [this] {
    host.answers = {{"Get(FileName)", "Sales"}};
    Call({"E2", "K2", "M2", "http://x"});
    host.answers = {{"Get(FileName)", "Contacts"}};
  };
  duringEvaluation = signInMeanwhile;
  Call({"E1", "K1", "M1", "http://s"});
  EXPECT_EQ(g_registeredFileName, "Sales");
  EXPECT_EQ(SignIn(), (Texts{"K2", "http://x", "K2", "http://x"}));
  g_registeredFileName.clear();
  duringEvaluation = signInMeanwhile;
  Idle();
  EXPECT_EQ(g_registeredFileName, "Sales");
}

TEST_F(Register, OneWithinTheEvaluationOfACommandDoesNotMoveItToTheNewAccount) {
  const auto signInMeanwhile = [this] { Call({"E2", "K2", "M2", "http://x"}); };
  g_registered = true;
  g_registeredFileName = "Sales";
  for (const char* type : {"LIST_FILES", "GET_SCHEMA"}) {
    g_licenseKey = "K1", g_baseUrl = "http://s";
    Poll(R"({"id":"c1","type":")" + std::string(type) + "\"}");
    duringEvaluation = signInMeanwhile;
    Idle();
    RunJobs();
    for (const std::string& sent : Sent()) {
      EXPECT_NE(sent.find("http://x") == sent.npos,
                sent.find("/api/bridge/register") != sent.npos || sent.find("/version") != sent.npos)
          << sent;
    }
  }
  g_licenseKey = "K1", g_baseUrl = "http://s";
  duringEvaluation = signInMeanwhile;
  startErrors = {100, 100};
  Idle();
  RunJobs();
  EXPECT_EQ(Sent().back(), Ended("c1", R"(Could not start "Varnix Live Push" in "Sales" (FM error 100). )"
                                       "Make sure the file is open."));
}

}  // namespace
