// Varnix.Register: what is asked of the service, and what a success and a failure leave behind.
#include "bridge/Register.h"

#include <cstdlib>

#include "bridge/BridgeState.h"
#include "core/Prefs.h"
#include "core/Product.h"
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

}  // namespace
