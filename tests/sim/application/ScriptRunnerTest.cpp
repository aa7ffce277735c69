// Scripts as far as they are simulated.
#include "application/ScriptRunner.h"

#include <gtest/gtest.h>

#include <sstream>

#include "calc/Unicode.h"
#include "sim/application/SmallExport.h"

namespace {

using Lines = std::vector<std::string>;

std::string Bytes(const std::string& path) {
  std::ostringstream bytes;
  bytes << std::ifstream(path, std::ios::binary).rdbuf();
  return bytes.str();
}

class ScriptRunner : public SmallExports {
 protected:
  // Opens a file whose script has `steps`, runs it, and returns its result.
  std::string Run(const std::string& steps, SmallFile file = {}) {
    sim::Application application;
    file.steps = steps;
    std::string error;
    EXPECT_TRUE(application.files().Open(Write(file), error)) << error;
    auto& opened = *application.files().all().front();
    const sim::ScriptSurroundings surroundings{[this](const std::string& line) { shown.push_back(line); },
                                               [](int, std::chrono::milliseconds) {}};
    calc::Value result;
    succeeded = sim::RunScript(application, surroundings, opened, opened.solution.scripts.front(),
                               calc::Value::OfText(u"parameter"), result);
    return calc::ToUtf8(result.AsText());
  }

  bool succeeded = false;
  Lines shown;
};

TEST_F(ScriptRunner, TakesOneBranchWhateverIsNestedInTheOthers) {
  const std::string nested = If("1") + SetVariable("$x", "$x & \"n\"") + Else() + SetVariable("$x", "\"!\"") + EndIf();
  for (const auto& [value, expected] : {std::pair{"1", "an"}, {"2", "bn"}, {"3", "cn"}}) {
    const std::string steps = SetVariable("$v", value) + If("$v = 1") + SetVariable("$x", "\"a\"") + nested +
                              ElseIf("$v = 2") + SetVariable("$x", "\"b\"") + nested + Else() +
                              SetVariable("$x", "\"c\"") + nested + EndIf() + Exit("$x");
    EXPECT_EQ(Run(steps), expected);
    EXPECT_TRUE(succeeded);
  }
}

TEST_F(ScriptRunner, PassesOverDisabledStepsAndTellsOfThoseItDoesNotSimulate) {
  EXPECT_EQ(Run(If("0", false) + SetVariable("$x", "1") + SetVariable("$x", "2", false) + If("0") + If("1", false) +
                EndIf() + Exit("$x") + Exit("3")),
            "1");
  EXPECT_EQ(Run(SetVariable("$$g", "Get ( ScriptName ) & Get ( ScriptParameter )") + Exit("$$g")), "Goparameter");
  EXPECT_EQ(Run(Step(6, "Go to Layout") +
                Step(87, "Dialog", Parameter("Title", Formula("\"T\"")) + Parameter("Message", Formula("1 + 1")))),
            "");
  EXPECT_TRUE(succeeded);
  EXPECT_EQ(shown, (Lines{"script \"Go\", step 1 \"Go to Layout\" is not simulated; skipped", "dialog \"T\": 2"}));
}

TEST_F(ScriptRunner, GoesOnAfterAFailureButReportsIt) {
  EXPECT_EQ(Run(SetVariable("$x", "1 +") + Exit("Get ( LastError ) & $x")), "1204");
  EXPECT_FALSE(succeeded);
  EXPECT_EQ(shown, Lines{"script \"Go\", step 1 \"Set Variable\" failed with error 1204: 1 +"});
}

TEST_F(ScriptRunner, LeavesCapturedErrorsToTheScript) {
  const auto capture = [](const std::string& state) {
    return Step(86, "Set Error Capture", Parameter("Boolean", "<Boolean value=\"" + state + "\"></Boolean>"));
  };
  const std::string fail = SetVariable("$x", "1 +") + SetVariable("$e", "Get ( LastError )");
  EXPECT_EQ(Run(capture("True") + fail + Exit("$e & \",\" & Get ( ErrorCaptureState )")), "1204,1");
  EXPECT_TRUE(succeeded);
  EXPECT_EQ(shown, Lines{});
  Run(capture("True") + capture("False") + fail);
  EXPECT_FALSE(succeeded);
}

TEST_F(ScriptRunner, SavesTheExportItselfAsXml) {
  const std::string setPath = SetVariable("$path", "\"/Macintosh HD" + folder_ + "/copy.xml\"");
  const auto save = [&](const std::string& window, const std::string& destination, const SmallFile& file = {}) {
    return Run(setPath +
                   Step(3, "Save a Copy as XML",
                        (window.empty() ? "" : Parameter("Calculation", Formula(window))) +
                            Parameter("UniversalPathList", "<UniversalPathList><ObjectList><Location>" + destination +
                                                               "</Location></ObjectList></UniversalPathList>")) +
                   Exit("Get ( LastError )"),
               file);
  };
  for (const char* window : {"", "Get ( WindowName )"}) {
    EXPECT_EQ(save(window, "$path"), "0");
    EXPECT_EQ(Bytes(folder_ + "/copy.xml"), Bytes(folder_ + "/Small.xml"));
    std::filesystem::remove(folder_ + "/copy.xml");
  }
  std::ofstream(folder_ + "/copy.xml") << "older";
  EXPECT_EQ(save("", "$path"), "800");
  EXPECT_EQ(shown.back(), "script \"Go\", step 2 \"Save a Copy as XML\" failed with error 800: " + folder_ +
                              "/copy.xml: File exists");
  EXPECT_EQ(save("", "$path</Location><Location>file:second.xml"), "0") << "the next path of the list";
  EXPECT_EQ(Bytes(folder_ + "/copy.xml"), "older");
  EXPECT_EQ(Bytes(folder_ + "/second.xml"), Bytes(folder_ + "/Small.xml"));
  std::filesystem::remove(folder_ + "/copy.xml");
  EXPECT_EQ(save("\"Other\"", "$path"), "100");
  EXPECT_EQ(save("", "filemac:/Macintosh HD/no/such/folder/x.xml"), "800");
  EXPECT_EQ(save("", "$path", {.privilegeSet = "4"}), "9");
  EXPECT_FALSE(succeeded);
  EXPECT_EQ(save("", "$path", {.fullAccess = "True", .privilegeSet = "4"}), "0");
}

}  // namespace
