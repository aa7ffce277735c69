// The plug-in binary through its one entry point: messages, strings, registration, restored sign-in.
#include <FMWrapper/FMXExtern.h>
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "core/Product.h"
#include "tests/support/ScriptedHost.h"

namespace {

constexpr fmx::ptrtype kUntouched = 0xABCDEF0123456789;

// A fresh load of the binary with its own settings folder; its globals start anew each time.
class PluginBinary : public testing::Test {
 protected:
  PluginBinary() {
    std::string pattern = (std::filesystem::temp_directory_path() / "varnix-plugin-test-XXXXXX").string();
    folder_ = mkdtemp(pattern.data());
    setenv("XDG_CONFIG_HOME", folder_.c_str(), 1);
    unsetenv("DISPLAY");  // the clipboard of whoever runs the tests is not ours
  }

  ~PluginBinary() override {
    if (library_ != nullptr) {
      Send(kFMXT_Shutdown);
      dlclose(library_);
    }
    std::filesystem::remove_all(folder_);
  }

  void Load(short hostVersion = 71) {
    library_ = dlopen(PLUGIN_FILE, RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(library_, nullptr) << dlerror();
    entryPoint_ = reinterpret_cast<FMX_ExternCallProc>(dlsym(library_, "FMExternCallProc"));
    ASSERT_NE(entryPoint_, nullptr);
    call_.extnVersion = hostVersion;
    call_.unusedID = -1;
    call_.cCurrentEnv = [](FMX_ExprEnv*) -> FMX_ErrorCode { return 0; };
  }

  void Send(FMX_ExternCallSwitch message, FMX_UChar parm1 = 0, FMX_PtrType parm3 = 0, FMX_PtrType result = kUntouched) {
    call_.whichCall = message;
    call_.parm1 = parm1;
    call_.parm3 = parm3;
    call_.result = result;
    entryPoint_(&call_);
  }

  fmx::ptrtype Initialise() {
    Send(kFMXT_Init, 1);
    return call_.result;
  }

  std::string Call(const char16_t* name, const std::vector<std::string>& arguments = {}) {
    const auto* function = fmhost::FindFunction(name);
    return function == nullptr ? "not registered" : CallHandler(function->function, arguments);
  }

  std::u16string AskString(int id, std::size_t capacity = 100) {
    std::u16string buffer(100, u'~');
    Send(kFMXT_GetString, static_cast<FMX_UChar>(id), capacity, reinterpret_cast<FMX_PtrType>(buffer.data()));
    return buffer.substr(0, buffer.find(u'\0'));
  }

  ScriptedHost host_;
  std::string folder_;
  void* library_ = nullptr;
  FMX_ExternCallProc entryPoint_ = nullptr;
  FMX_ExternCallStruct call_{};
};

TEST_F(PluginBinary, AnswersItsStrings) {
  Load();
  const std::pair<int, std::u16string> cases[] = {
      {127, u""}, {128, u"Varnix"},      {129, u"Varnix background bridge for FileMaker"},
      {130, u""}, {131, u"Vrnx1nnYYnn"}, {132, calc::ToUtf16(kGuideUrl)},
      {133, u""}};
  for (const auto& [id, text] : cases) EXPECT_EQ(AskString(id), text) << id;
  EXPECT_EQ(AskString(129, 10), u"Varnix ba");
  EXPECT_EQ(AskString(131, 3), u"Vrnx1nnYYnn") << "the options are written whole whatever the capacity";
}

TEST_F(PluginBinary, RegistersNineteenFunctionsInOrderAndTakesAllBack) {
  Load();
  EXPECT_EQ(Initialise(), 76u);
  ASSERT_EQ(fmhost::Functions().size(), 19u);
  short id = 100;
  for (const auto& function : fmhost::Functions()) {
    EXPECT_EQ(function.id, id++);
    EXPECT_EQ(function.plugin, "Vrnx");
    EXPECT_EQ(function.flags, 0x00FFFF7Eu);
    EXPECT_TRUE(function.prototype.starts_with(function.name));
  }
  EXPECT_EQ(Call(u"Varnix.Version", {"any", "arguments"}), "1.6.16");
  Send(kFMXT_Shutdown);
  EXPECT_TRUE(fmhost::Functions().empty());
  EXPECT_EQ(Initialise(), 76u) << "the host may enable the plug-in again";
}

TEST_F(PluginBinary, StaysDisabledInAnOldHost) {
  Load(55);
  EXPECT_EQ(Initialise(), static_cast<fmx::ptrtype>(-2));
  EXPECT_TRUE(fmhost::Functions().empty());
  call_.extnVersion = 56;
  EXPECT_EQ(Initialise(), 76u);
}

TEST_F(PluginBinary, IsDisabledWhenItsFirstFunctionIsRefusedThoughTheOthersAreRegistered) {
  Load();
  const fmx::QuadCharUniquePtr other('O', 't', 'h', 'r');
  const fmx::TextUniquePtr name;
  const auto squat = [&](const char* functionName, short id) {
    name->Assign(functionName, fmx::Text::kEncoding_UTF8);
    const auto never = [](short, const fmx::ExprEnv&, const fmx::DataVect&, fmx::Data&) -> fmx::errcode { return 0; };
    ASSERT_EQ(fmx::ExprEnv::RegisterExternalFunctionEx(*other, id, *name, *name, *name, 0, 0, 0, never), 0);
  };
  squat("Varnix.ListFiles", 1);
  EXPECT_EQ(Initialise(), 76u) << "a refusal of any other function is passed over";
  EXPECT_EQ(fmhost::Functions().size(), 19u);
  Send(kFMXT_Shutdown);
  squat("Varnix.Version", 2);
  EXPECT_EQ(Initialise(), static_cast<fmx::ptrtype>(-2));
  EXPECT_EQ(fmhost::Functions().size(), 19u);
  fmx::ExprEnv::UnRegisterExternalFunction(*other, 1);
  fmx::ExprEnv::UnRegisterExternalFunction(*other, 2);
}

TEST_F(PluginBinary, IgnoresOtherMessages) {
  Load();
  for (const int message : {2, 3, 5, 6, 8, 9, 255}) {
    auto before = call_;
    Send(static_cast<FMX_ExternCallSwitch>(message), 128, 100);
    before.whichCall = static_cast<FMX_ExternCallSwitch>(message);
    before.parm1 = 128;
    before.parm3 = 100;
    before.result = kUntouched;
    EXPECT_EQ(std::memcmp(&before, &call_, sizeof call_), 0) << message;
  }
}

TEST_F(PluginBinary, RestoresASavedSignIn) {
  struct Case {
    const char* settings;
    const char* registered;
    std::string baseUrl;
  };
  const Case cases[] = {
      {"", "false", kDefaultBaseUrl},
      {"com.varnix.plugin.baseUrl=http://localhost:1\n", "false", kDefaultBaseUrl},
      {"com.varnix.plugin.licenseKey=\ncom.varnix.plugin.baseUrl=http://localhost:1\n", "false", kDefaultBaseUrl},
      {"com.varnix.plugin.licenseKey=K1\n", "true", kDefaultBaseUrl},
      {"com.varnix.plugin.licenseKey=K1\ncom.varnix.plugin.baseUrl=http://localhost:1\n", "true",
       "http://localhost:1"}};
  for (const auto& c : cases) {
    std::filesystem::create_directories(folder_ + "/varnix");
    std::ofstream(folder_ + "/varnix/preferences") << c.settings;
    Load();
    Initialise();
    const auto report = Call(u"Varnix.DebugContext");
    EXPECT_NE(report.find(std::string("\"registered\":") + c.registered + ",\"baseUrl\":\"" + c.baseUrl + "\""),
              report.npos)
        << c.settings << report;
    Send(kFMXT_Shutdown);
    dlclose(library_);
    library_ = nullptr;
  }
}

TEST_F(PluginBinary, SignedInLearnsItsFileOnAnIdleCallAndForgetsNothingElse) {
  std::filesystem::create_directories(folder_ + "/varnix");
  std::ofstream(folder_ + "/varnix/preferences") << "com.varnix.plugin.licenseKey=K1\n";
  Load();
  Initialise();
  Send(kFMXT_Idle);
  EXPECT_EQ(host_.asked, std::vector<std::string>{"Get(FileName)"});
  host_.answers = {{"Get(FileName)", "Sales"}};
  Send(kFMXT_Idle);
  Send(kFMXT_Idle);
  EXPECT_EQ(host_.asked.size(), 2u) << "once it is known it is not asked for again";
  EXPECT_NE(Call(u"Varnix.DebugContext").find("\"registeredFile\":\"Sales\""), std::string::npos);
  Send(kFMXT_Shutdown);
  host_.asked.clear();
  Send(kFMXT_Idle);
  EXPECT_TRUE(host_.asked.empty()) << "nothing is done after shutdown";
}

}  // namespace
