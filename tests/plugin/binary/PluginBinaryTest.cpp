// The plug-in binary through its one entry point: messages, strings, registration, restored sign-in.
#include <FMWrapper/FMXText.h>

#include <fstream>
#include <iterator>
#include <tuple>

#include "core/Prefs.h"
#include "core/Product.h"
#include "plugin/binary/PluginBinary.h"

namespace {

TEST_F(PluginBinary, AnswersItsStrings) {
  const std::pair<int, std::u16string> cases[] = {
      {127, u""}, {128, u"Varnix"},      {129, u"Varnix background bridge for FileMaker"},
      {130, u""}, {131, u"Vrnx1nnYYnn"}, {132, calc::ToUtf16(kGuideUrl)},
      {133, u""}};
  for (const auto& [id, text] : cases) EXPECT_EQ(AskString(id), text) << id;
  for (std::size_t capacity = 1; capacity < 100; ++capacity) {
    EXPECT_EQ(AskString(129, capacity), cases[2].second.substr(0, capacity - 1));
  }
  EXPECT_EQ(AskString(131, 3), u"Vrnx1nnYYnn") << "the options are written whole whatever the capacity";
}

TEST_F(PluginBinary, RegistersNineteenFunctionsInOrderUnlessTheHostIsTooOld) {
  EXPECT_EQ(Initialise(), 76u);
  const auto& functions = wrapper::Functions();
  ASSERT_EQ(functions.size(), 19u);
  short id = 100;
  for (const auto& function : functions) {
    EXPECT_EQ(function.id, id++);
    EXPECT_EQ(function.plugin, "Vrnx");
    EXPECT_EQ(function.flags, 0x00FFFF7Eu);
  }
  EXPECT_EQ(calc::ToUtf8(functions[14].description),
            "Returns empty if the plugin is up to date, or a human-readable notice if a newer version is available at "
            "varnix.example/guide#plugin.");
  Send(kFMXT_Shutdown);
  EXPECT_TRUE(functions.empty());
  call_.extnVersion = 55;
  EXPECT_EQ(Initialise(), static_cast<fmx::ptrtype>(-2));
  EXPECT_TRUE(functions.empty()) << "the host is too old";
  call_.extnVersion = 56;
  EXPECT_EQ(Initialise(), 76u) << "the host may enable the plug-in again";
}

std::string ArgumentCount(short least, short most) {
  if (most == 0) return "none";
  return std::to_string(least) + (most == least ? "" : " or " + std::to_string(most));
}

TEST_F(PluginBinary, TheFunctionReferenceDescribesWhatIsRegistered) {
  Initialise();
  std::ifstream file(REFERENCE);
  const std::string reference(std::istreambuf_iterator<char>(file), {});
  std::size_t described = 0;  // up to the end of the entry before
  for (const auto& function : wrapper::Functions()) {
    const std::string entry = "\n## " + calc::ToUtf8(function.name) + "\n\n```\n" + calc::ToUtf8(function.prototype) +
                              "\n```\n\nArguments: " + ArgumentCount(function.minArguments, function.maxArguments) +
                              "\n";
    const std::size_t next = reference.find("\n## ", described);
    EXPECT_EQ(reference.substr(next, entry.size()), entry);
    described = next + entry.size();
  }
  EXPECT_EQ(reference.find("\n## ", described), reference.npos);
}

TEST_F(PluginBinary, AnswersEachFunctionWithItsOwnHandler) {
  Initialise();
  const std::string file = folder_ + "/file.txt";
  std::ofstream(file) << "in the file";
  host_.answers = {{"TableNames(\"F\")", "T"}, {"DatabaseNames", "Open.fmp12"}};
  struct Case {
    const char16_t* name;
    std::vector<std::string> arguments;
    std::string expected;  // its beginning, where the whole is another test's business
  };
  const Case cases[] = {
      {u"Varnix.Version", {"any", "arguments"}, "1.6.16"},
      {u"Varnix.ReadFile", {file}, "in the file"},
      {u"Varnix.POSIXPath", {"/Vol" + file}, file},
      {u"Varnix.GetSchema", {"F"}, "{\"file\":\"F\""},
      {u"Varnix.ListFiles", {}, "Open"},
      {u"Varnix.Register", {}, "ERROR: email is empty."},
      {u"Varnix.HTTPPost", {}, "ERROR: url is empty."},
      {u"Varnix.PushSnapshot", {}, "ERROR: ingestUrl is empty."},
      {u"Varnix.PushScript", {}, "ERROR: licenseKey is empty."},
      {u"Varnix.LivePush", {}, "ERROR: posixPath is empty."},
      {u"Varnix.UploadFile", {"http://127.0.0.1:1", "key", "name", "/nowhere"}, "ERROR: Could not read file: /nowhere"},
      {u"Varnix.DebugContext", {}, "{\"pluginVersion\":\"1.6.16\""},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(Call(c.name, c.arguments).substr(0, c.expected.size()), c.expected) << calc::ToUtf8(c.name);
  }
}

TEST_F(PluginBinary, OnlyTheRefusalOfItsFirstFunctionDisablesIt) {
  const fmx::QuadCharUniquePtr other('O', 't', 'h', 'r');
  const fmx::TextUniquePtr name;
  for (const auto& [taken, result] : {std::pair{"Varnix.ListFiles", 76}, {"Varnix.Version", -2}}) {
    name->Assign(taken, fmx::Text::kEncoding_UTF8);
    const auto never = [](short, const fmx::ExprEnv&, const fmx::DataVect&, fmx::Data&) -> fmx::errcode { return 0; };
    ASSERT_EQ(fmx::ExprEnv::RegisterExternalFunctionEx(*other, 1, *name, *name, *name, 0, 0, 0, never), 0);
    EXPECT_EQ(Initialise(), static_cast<fmx::ptrtype>(result));
    EXPECT_EQ(wrapper::Functions().size(), 19u) << "the others are registered";
    Send(kFMXT_Shutdown);
    fmx::ExprEnv::UnRegisterExternalFunction(*other, 1);
  }
}

TEST_F(PluginBinary, RestoresASavedSignIn) {
  const std::tuple<std::string, std::string, std::string> cases[] = {
      {"http://localhost:1", "", kDefaultBaseUrl},
      {"", "K1", kDefaultBaseUrl},
      {"http://localhost:1", "K1", "http://localhost:1"}};
  for (const auto& [savedUrl, key, baseUrl] : cases) {
    Prefs::SaveBaseUrl(savedUrl);
    Prefs::SaveLicenseKey(key);
    Initialise();
    const auto report = Call(u"Varnix.DebugContext");
    const std::string registered = key.empty() ? "false" : "true";
    const std::string expected = "\"registered\":" + registered + ",\"baseUrl\":\"" + baseUrl + '"';
    EXPECT_NE(report.find(expected), report.npos) << savedUrl << report;
    for (const bool isRunning : {true, false}) {
      host_.asked.clear();
      Send(kFMXT_Idle);
      EXPECT_EQ(host_.asked.size(), isRunning && !key.empty() ? 1u : 0u) << "to learn the file, once it runs";
      Send(kFMXT_Shutdown);
    }
  }
  Prefs::SaveBaseUrl("");
  Prefs::SaveLicenseKey("");
}

}  // namespace
