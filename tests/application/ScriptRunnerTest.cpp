// Scripts as far as they are simulated.
#include "sim/application/ScriptRunner.h"

#include <gtest/gtest.h>

#include <atomic>
#include <sstream>

#include "sim/calc/Unicode.h"
#include "tests/application/SmallExport.h"

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
    application.cancelFlag = &cancel;
    file.steps = steps;
    std::string error;
    EXPECT_TRUE(application.Open(Write(file), error)) << error;
    auto& opened = *application.files().front();
    const sim::ScriptSurroundings surroundings{[this](const std::string& line) { shown.push_back(line); },
                                               [this](int level, std::chrono::milliseconds duration) {
                                                 if (duration.count() > 0) pauses.emplace_back(level, duration.count());
                                               }};
    calc::Value result;
    succeeded = sim::RunScript(application, surroundings, opened, opened.solution.scripts.front(),
                               calc::Value::OfText(u"parameter"), result);
    return calc::ToUtf8(result.AsText());
  }

  std::atomic<int> cancel{0};
  bool succeeded = false;
  Lines shown;
  std::vector<std::pair<int, long long>> pauses;
};

TEST_F(ScriptRunner, TakesOneBranchWhateverIsNestedInTheOthers) {
  const std::string nested =
      If("1") + SetVariable("$x", "$x & \"n\"") + Else() + SetVariable("$x", "$x & \"!\"") + EndIf();
  for (const auto& [value, expected] : {std::pair{"1", "an."}, {"2", "bn."}, {"3", "cn."}, {"4", "dn."}}) {
    const std::string steps = SetVariable("$v", value) + If("$v = 1") + SetVariable("$x", "$x & \"a\"") + nested +
                              ElseIf("$v = 2") + SetVariable("$x", "$x & \"b\"") + nested + ElseIf("$v = 3") +
                              SetVariable("$x", "$x & \"c\"") + nested + Else() + SetVariable("$x", "$x & \"d\"") +
                              nested + EndIf() + SetVariable("$x", "$x & \".\"") + Exit("$x");
    EXPECT_EQ(Run(steps), expected);
    EXPECT_TRUE(succeeded);
  }
  EXPECT_EQ(Run(If("0") + If("1") + Exit("\"in\"") + EndIf() + EndIf() + Exit("\"out\"")), "out");
}

TEST_F(ScriptRunner, PassesOverDisabledStepsAndTheirBlocks) {
  EXPECT_EQ(Run(If("0", false) + SetVariable("$x", "1") + SetVariable("$x", "2", false) + Exit("$x") + Exit("3")), "1");
}

TEST_F(ScriptRunner, KnowsItsParameterNameAndGlobals) {
  EXPECT_EQ(Run(SetVariable("$$g", "Get ( ScriptName ) & \" \" & Get ( ScriptParameter )") + Exit("$$g")),
            "Go parameter");
}

TEST_F(ScriptRunner, NamesStepsThatItDoesNotSimulate) {
  EXPECT_EQ(Run(Step(6, "Go to Layout") + Exit("\"end\"")), "end");
  EXPECT_TRUE(succeeded);
  EXPECT_EQ(shown, Lines{"script \"Go\", step 1 \"Go to Layout\" is not simulated; skipped"});
}

TEST_F(ScriptRunner, GoesOnAfterAFailureButReportsIt) {
  EXPECT_EQ(Run(SetVariable("$x", "1 +") + Exit("Get ( LastError ) & $x")), "1204");
  EXPECT_FALSE(succeeded);
  EXPECT_EQ(shown, Lines{"script \"Go\", step 1 \"Set Variable\" failed with error 1204: 1 +"});
  EXPECT_EQ(Run(If("1 / 0") + Exit("Get ( LastError )") + EndIf()), "15") << "? is true";
  EXPECT_FALSE(succeeded);
}

TEST_F(ScriptRunner, EndsWhenItIsCancelled) {
  cancel = 2;
  EXPECT_EQ(Run(Step(6, "Go to Layout") + Exit("1")), "");
  EXPECT_FALSE(succeeded);
  EXPECT_EQ(shown.back(), "script \"Go\", step 1 \"Go to Layout\" was cancelled, and the script with it");
}

TEST_F(ScriptRunner, SendsIdleMessagesWhilePaused) {
  const auto pause = [](const std::string& seconds) {
    return Step(62, "Pause",
                Parameter("Options", "<Options type=\"Duration (seconds): \">" + Formula(seconds) + "</Options>"));
  };
  Run(pause("1.5") + pause("-1") +
      Step(62, "Pause", Parameter("Options", "<Options type=\"Indefinitely\"></Options>")));
  EXPECT_EQ(pauses, (std::vector<std::pair<int, long long>>{{2, 1500}}));
  EXPECT_EQ(shown, Lines{"script \"Go\", step 3 \"Pause\" would wait for the user; going on"});
}

TEST_F(ScriptRunner, SavesTheExportItselfAsXml) {
  const auto save = [](const std::string& window, const std::string& destination) {
    return Step(3, "Save a Copy as XML",
                (window.empty() ? "" : Parameter("Calculation", Formula(window))) +
                    Parameter("UniversalPathList", "<UniversalPathList><ObjectList><Location>" + destination +
                                                       "</Location></ObjectList></UniversalPathList>"));
  };
  const std::string path = SetVariable("$path", "\"/Macintosh HD" + folder_ + "/copy.xml\"");
  for (const char* window : {"", "Get ( WindowName )"}) {
    EXPECT_EQ(Run(path + save(window, "$path") + Exit("Get ( LastError )")), "0");
    EXPECT_EQ(Bytes(folder_ + "/copy.xml"), Bytes(folder_ + "/Small.xml"));
    std::filesystem::remove(folder_ + "/copy.xml");
  }
  EXPECT_EQ(Run(save("", "file:beside.xml") + Exit("Get ( LastError )")), "0");
  EXPECT_TRUE(std::filesystem::exists(folder_ + "/beside.xml")) << "a relative path is one beside the file";

  EXPECT_EQ(Run(path + save("\"Other\"", "$path") + Exit("Get ( LastError )")), "100");
  EXPECT_EQ(Run(Step(3, "Save a Copy as XML") + Exit("Get ( LastError )")), "1") << "it names no file";
  EXPECT_EQ(Run(save("", "filemac:/Macintosh HD/no/such/folder/x.xml") + Exit("Get ( LastError )")), "800");
  EXPECT_FALSE(succeeded);
  SmallFile restricted{.privilegeSet = 4};
  EXPECT_EQ(Run(path + save("", "$path") + Exit("Get ( LastError )"), restricted), "9");
  restricted.fullAccess = "True";
  EXPECT_EQ(Run(path + save("", "$path") + Exit("Get ( LastError )"), restricted), "0");
}

}  // namespace
