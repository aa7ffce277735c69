// fmsim as a person or a script uses it: options in order, results, messages, exit status.
#include <gtest/gtest.h>

#include "tests/fmsim/FmsimTest.h"

namespace {

using Arguments = std::vector<std::string>;

const std::string kWorkshop = SAMPLES "/Workshop.xml";
const std::string kTimesheets = SAMPLES "/Timesheets.xml";

TEST_F(Fmsim, SaysWhatFailedAndGoesOn) {
  const struct {
    Arguments arguments;
    std::string output;
    std::string errors;
  } cases[] = {
      {{"--eval", "1 +", "--eval", "2"}, "2\n", "error 1204: a number, text, field name or \"(\" is expected here\n"},
      {{"--open", "/no/such.xml", "--eval", "2"}, "2\n", "/no/such.xml cannot be opened: No such file or directory\n"},
      {{"--plugin", "/no/such.fmx"}, "", "cannot load plug-in /no/such.fmx: No such file or directory\n"},
      {{"--plugin", PLUGIN_FILE, "--eval", "Varnix.HTTPPost ( 1 )"}, "", "error 1201: there are too few parameters\n"},
      {{"--open", kWorkshop, "--run", "No Such"},
       "",
       "no script \"No Such\" in \"Workshop\" (error 104: the script is missing)\n"},
      {{"--host-version", "55", "--plugin", CARELESS_PLUGIN},
       "",
       "plug-in Careless.fmx does not want to be enabled by a host of extension version 55\n"
       "Careless.fmx: 1 Text object never deleted\n"},
      {{"--plugin", CARELESS_PLUGIN, "--eval", "Careless.Throw", "--idle", "0"},
       "",
       "Careless.fmx: Careless.Throw threw std::runtime_error: out of ink\nerror 1200: the calculation failed\n"
       "Careless.fmx: the idle message threw int\nCareless.fmx: left \"Careless.Leak\" registered\n"},
      {{"--open", Write({.steps = SetVariable("$x", "1 / 0") + Exit("$x")}), "--run", "Go"},
       "?\n",
       "script \"Go\", step 1 \"Set Variable\" failed with error 15: 1 / 0\n"},
  };
  for (const auto& c : cases) {
    const auto result = Run(c.arguments);
    EXPECT_EQ(result.output, c.output);
    EXPECT_EQ(result.errors, c.errors);
    EXPECT_EQ(result.status, 1);
  }
}

TEST_F(Fmsim, TellsWhatFileMakerCouldDo) {
  const std::string small = Write({.language = "German"});
  const auto result =
      Run({"--open", small, "--eval", "ExecuteSQL ( \"SELECT MAX ( FieldId ) FROM FileMaker_Fields\" ; \"\" ; \"\" )"});
  EXPECT_EQ(result.output, "?\n");
  EXPECT_EQ(result.errors,
            small +
                " was saved by a FileMaker in German: names and scripts can be used, but functions in its formulas are "
                "spelled in that language and fail; save it with an English FileMaker to calculate them\n"
                "ExecuteSQL gives \"?\": the simulator does not know this part of FileMaker's SQL: MAX\n");
  EXPECT_EQ(result.status, 0);
}

TEST_F(Fmsim, RefusesWrongUsageBeforeDoingAnything) {
  for (const char* wrong : {"--nonsense", "--idle", "--sql"}) {
    const auto result = Run({"--eval", "1", wrong, "-1"});
    EXPECT_EQ(result.output, "");
    EXPECT_NE(result.errors.find("usage: fmsim"), std::string::npos);
    EXPECT_EQ(result.status, 2);
  }
}

TEST_F(Fmsim, TakesLinesFromAPipe) {
  const auto result =
      Run({"--open", kTimesheets},
          "// a comment\n\n1 + 1\n.files\n.check 1 = 1\n.check 1 = 2\n.nonsense\n.5 + .5\n.say done\n.quit\n3");
  EXPECT_EQ(result.output, "2\n* Timesheets.fmp12  (2 tables, 3 occurrences; account Admin)\nok      1 = 1\n1\ndone\n");
  EXPECT_EQ(result.errors, "NOT OK  1 = 2\nno command .nonsense; .help lists them\n");
  EXPECT_EQ(result.status, 1);
  const std::string small = Write({.steps = Exit("\"<\" & Get ( ScriptParameter ) & \">\"")});
  EXPECT_EQ(Run({"--open", small, "--parameter", "1 + 1", "--run", "Go"}).output, "<1 + 1>\n");
  EXPECT_EQ(Run({"--open", small}, ".run Go ; 1 + 1\n.run Go\n\"a last line without its end\"").output,
            "<2>\n<>\na last line without its end\n");
}

TEST_F(Fmsim, ListsTheDesignOfASampleThroughThePlugin) {
  const auto eval = [&](Arguments options, const std::string& formula) {
    options.insert(options.end(),
                   {"--plugin", PLUGIN_FILE, "--open", kTimesheets, "--open", kWorkshop, "--eval", formula});
    const auto result = Run(options);
    EXPECT_EQ(result.status, 0) << formula << result.errors;
    return result.output;
  };
  const std::string typed = "PatternCount ( Varnix.GetSchema ; \"\\\"type\\\":\\\"varchar\" ) > 0";
  EXPECT_EQ(eval({}, typed), "0\n") << "FileMaker refuses the query, so types stay unknown";
  EXPECT_EQ(eval({"--sql", "lenient"}, typed), "1\n");
  EXPECT_EQ(eval({"--functions", "host"}, "Right ( Varnix.GetSchema ; 40 )"),
            "\"privilegeSets\":[],\"customFunctions\":[]}\n");
  EXPECT_EQ(eval({}, "Left ( Varnix.GetSchema ( \"Timesheets\" ) ; 20 ) & Varnix.GetSchema ( \"Closed\" )"),
            "{\"file\":\"Timesheets\"{}\n");
  EXPECT_EQ(eval({"--eval", "DatabaseNames"}, "Varnix.ListFiles"), "\nWorkshop\nTimesheets\n") << "in order";
  EXPECT_EQ(eval({}, "PatternCount ( Varnix.DebugContext ; \"\\\"livePushVisible\\\":\\\"1\\\"\" )"), "1\n");
}

}  // namespace
