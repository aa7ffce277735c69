// Varnix.Register: the request, and the state after a success and after a failure.
#include "bridge/SignIn.h"
#include "core/Prefs.h"
#include "core/Product.h"
#include "plugin/bridge/BridgeTest.h"

namespace {

class Register : public BridgeTest {
 protected:
  Register() {
    g_registeredFileName.clear();
    Activate("Sales");
  }
  static std::string Call(const Texts& arguments) { return CallHandler(Do_Register, arguments); }
  /// The sign-in in force, with its file, and the one that the next start restores.
  static Texts SignedIn() {
    return {g_licenseKey, g_baseUrl, g_registeredFileName, Prefs::LoadLicenseKey(), Prefs::LoadBaseUrl()};
  }
  /// Within the next evaluation, a file called Sales signs in to another account.
  void SignInMeanwhile() {
    duringEvaluation = [this] {
      const auto answers = host.answers;
      Activate("Sales");
      EXPECT_EQ(Call({"E2", "K2", "M2", "http://x"}), "OK");
      host.answers = answers;
    };
  }
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
    g_registered = false;
    EXPECT_EQ(Call(arguments), "OK");
    RunJobs();
    EXPECT_EQ(Effects(),
              (Texts{"POST " + baseUrl + "/api/bridge/register {" + members + R"(,"pluginVersion":"1.6.16"})",
                     "GET " + baseUrl + "/api/plugin/version "}));
    EXPECT_EQ(SignedIn(), (Texts{arguments[1], baseUrl, "Sales", arguments[1], baseUrl}));
    EXPECT_TRUE(g_registered);
    host.answers.clear();  // a file without a name leaves the earlier one
  }
  Activate("Other");
  answers["/api/bridge/register"] = {true, "bad \"key\"", "", 401};
  EXPECT_EQ(Call({"E2", "K4", "M2", "http://y"}), "ERROR: HTTP 401 — bad \"key\"");
  EXPECT_EQ(SignedIn(), (Texts{"K3", "http://x/", "Sales", "K3", "http://x/"}));
  EXPECT_TRUE(g_registered && jobs.empty());
}

TEST_F(Register, AnEvaluationDoesNotUndoASignInThatItLetIn) {
  Activate("Contacts");
  SignInMeanwhile();
  Call({"E1", "K1", "M1", "http://s"});
  EXPECT_EQ(SignedIn(), (Texts{"K2", "http://x", "Sales", "K2", "http://x"}));
  g_registeredFileName.clear();
  SignInMeanwhile();
  Idle();
  EXPECT_EQ(g_registeredFileName, "Sales");
}

TEST_F(Register, OneWithinACommandsEvaluationDoesNotMoveTheCommandToItsAccount) {
  for (const std::string type : {"LIST_FILES", "GET_SCHEMA", ""}) {
    g_licenseKey = "K1";
    g_baseUrl = "http://s";
    if (!type.empty()) Poll(type);
    startErrors = {100, 100};
    SignInMeanwhile();
    Texts done = Step();
    std::erase_if(done, [](const std::string& effect) { return effect.find(" http://s/") == effect.npos; });
    EXPECT_EQ(done.size(), type.empty() ? 3u : 2u) << type;  // the last is the end of the schema request
  }
}

}  // namespace
