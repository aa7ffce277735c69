// The plug-in binary through its one entry point: messages, strings, registration, restored sign-in.
#include <FMWrapper/FMXExtern.h>
#include <FMWrapper/FMXText.h>
#include <dlfcn.h>

#include <fstream>
#include <tuple>

#include "core/Prefs.h"
#include "core/Product.h"
#include "support/FolderTest.h"
#include "support/Rows.h"
#include "support/ScriptedHost.h"

namespace {

using Texts = std::vector<std::string>;

/// The binary with its own settings.
class PluginBinary : public FolderTest {
 protected:
  PluginBinary() {
    library_ = dlopen(PLUGIN_FILE, RTLD_NOW | RTLD_LOCAL);
    EXPECT_NE(library_, nullptr) << dlerror();
    entryPoint_ = reinterpret_cast<FMX_ExternCallProc>(dlsym(library_, "FMExternCallProc"));
    call_.extnVersion = 71;
    call_.unusedID = -1;
    call_.cCurrentEnv = [](FMX_ExprEnv*) -> FMX_ErrorCode { return 0; };
  }
  ~PluginBinary() override {
    Send(kFMXT_Shutdown);
    dlclose(library_);
  }

  void Send(FMX_ExternCallSwitch message, FMX_UChar parm1 = 0, FMX_PtrType parm3 = 0, FMX_PtrType result = 0) {
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

  std::string Call(const std::string& name, const Texts& arguments = {}) {
    const auto* function = wrapper::FindFunction(calc::ToUtf16(name));
    return function == nullptr ? "not registered" : CallHandler(function->function, arguments);
  }

  std::u16string AskString(int id, std::size_t capacity = 100) {
    std::u16string buffer(100, u'~');
    Send(kFMXT_GetString, static_cast<FMX_UChar>(id), capacity, reinterpret_cast<FMX_PtrType>(buffer.data()));
    return buffer.substr(0, buffer.find(u'\0'));
  }

  ScriptedHost host_;
  void* library_;
  FMX_ExternCallProc entryPoint_;
  FMX_ExternCallStruct call_{};
};

TEST_F(PluginBinary, AnswersItsStrings) {
  ExpectRows(DATA "/strings.txt",
             [this](const auto& id) { return Replaced(calc::ToUtf8(AskString(std::stoi(id))), kGuideUrl, "{guide}"); });
  const std::u16string description = AskString(129);
  for (std::size_t capacity = 1; capacity < 100; ++capacity) {
    EXPECT_EQ(AskString(129, capacity), description.substr(0, capacity - 1));
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
  const std::string reference = Contents(REFERENCE);
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
  const auto answer = [&](const std::string& row) {
    const Texts words = ColumnsOf(Replaced(row, "{file}", file));
    const std::string given = Call(words.front(), {words.begin() + 1, words.end()});
    return Replaced(given.substr(0, given.find(',')), file, "{file}");  // the rest of JSON is another test's business
  };
  ExpectRows(DATA "/functions.txt", answer);
#ifndef __APPLE__  // where the clipboard would be the user's
  ExpectRows(DATA "/clipboard-functions.txt", answer);
#endif
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
    const auto report = Call("Varnix.DebugContext");
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
