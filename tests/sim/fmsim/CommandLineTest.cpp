// fmsim as a person or a script uses it: options in order, results, messages, exit status.
#include <gtest/gtest.h>

#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "sim/application/SmallExport.h"
#include "support/Process.h"

namespace {

using Arguments = std::vector<std::string>;

const std::string kWorkshop = SAMPLES "/Workshop.xml";
const std::string kTimesheets = SAMPLES "/Timesheets.xml";

class Fmsim : public SmallExports {
 protected:
  static ProcessResult Run(std::vector<std::string> arguments, const std::string& input = "") {
    arguments.insert(arguments.begin(), FMSIM);
    return RunProcess(arguments, input);
  }
};

TEST_F(Fmsim, ReportsWhatFailedAndGoesOn) {
  const struct {
    Arguments arguments;
    std::string output;
    std::string errors;
  } cases[] = {
      {{"--eval", "1 +", "--eval", "2"}, "2\n", "error 1204: a number, text, field name or \"(\" is expected here\n"},
      {{"--eval", "1 / 0"}, "?\n", "error 15: division by zero\n"},
      {{"--eval", "JSONGetElemnt & Nope ( 1 )", "--eval", "JSONGetElemnt"},
       "?\n",
       "error 1208: an operator is missing, the function does not exist, or \"(\" is not expected here: \"Nope\"\n"
       "error 102: the field is missing: \"JSONGetElemnt\". Did you mean JSONGetElement?\n"},
      {{"--open", "/no/such.xml", "--eval", "2"}, "2\n", "/no/such.xml cannot be opened: No such file or directory\n"},
      {{"--plugin", "/no/such.fmx"}, "", "cannot load plug-in /no/such.fmx: No such file or directory\n"},
      {{"--open", kWorkshop, "--run", "No Such"},
       "",
       "no script \"No Such\" in \"Workshop\" (error 104: the script is missing)\n"},
      {{"--host-version", "55", "--plugin", CARELESS_PLUGIN},
       "",
       "plug-in Careless.fmx does not want to be enabled by a host of extension version 55\n"
       "Careless.fmx: 1 Text object never deleted\n"},
      {{"--plugin", CARELESS_PLUGIN, "--eval", "Careless.Throw", "--idle", "0"},
       "?\n",
       "Careless.fmx: Careless.Throw threw std::runtime_error: out of ink\nerror 1200: the calculation failed\n"
       "Careless.fmx: the idle message threw int\nCareless.fmx: left \"Careless.Leak\" registered\n"},
      {{"--open", Write({.steps = "Set Variable $x | 1 / 0\nExit Script $x"}), "--run", "Go"},
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

TEST_F(Fmsim, TakesLinesFromAPipe) {
  const auto result = Run({"--open", kTimesheets},
                          "// a comment\n\n1 + 1\nLet ( [ x = \"a\n.quit\" ] ;\nx )\n.files\n.check 1 = 1\n.check 1 = "
                          "2\n.nonsense\n.5 + .5\n.say done\n.quit\n3");
  EXPECT_EQ(result.output,
            "2\na\n.quit\n* Timesheets.fmp12  (2 tables, 3 occurrences; account Admin)\nok      1 = 1\n1\ndone\n");
  EXPECT_EQ(result.errors, "NOT OK  1 = 2\nno command .nonsense; .help lists them\n");
  EXPECT_EQ(result.status, 1);
}

// What the terminal shows after `keys` have been typed, each when the prompt before it has come.
std::string Type(const std::vector<std::string>& keys) {
  int terminal = -1;
  const pid_t child = forkpty(&terminal, nullptr, nullptr, nullptr);
  if (child == 0) {
    execl(FMSIM, FMSIM, "--open", kTimesheets.c_str(), static_cast<char*>(nullptr));
    _exit(127);
  }
  std::string shown;
  std::size_t seen = 0;
  auto key = keys.begin();
  char bytes[4096];
  for (ssize_t count = 0; (count = read(terminal, bytes, sizeof bytes)) > 0;) {
    shown.append(bytes, static_cast<std::size_t>(count));
    const auto prompt = shown.find("> ", seen);
    if (prompt == shown.npos || key == keys.end()) continue;
    seen = prompt + 2;
    if (write(terminal, key->data(), key->size()) < 0) break;
    ++key;
  }
  close(terminal);
  int status = -1;
  waitpid(child, &status, 0);
  EXPECT_EQ(status, 0) << shown;
  return shown;
}

TEST_F(Fmsim, CompletesContinuesAndRemembersLinesOnATerminal) {
  setenv("XDG_STATE_HOME", folder_.c_str(), 1);
  const std::string shown =
      Type({".activate tim\t\r", "Max ( 3 ;\r", "2 )\r", ".run hours\t\r", "\"varnix.register\"\r", ".quit\r"});
  EXPECT_NE(shown.find("  ...> "), shown.npos) << shown;
  EXPECT_NE(shown.find("\n3\r\n"), shown.npos) << shown;
  EXPECT_EQ(shown.find("no script"), shown.npos) << shown;
  const std::string history = folder_ + "/varnix/fmsim_history";
  const auto kept = (std::stringstream() << std::ifstream(history).rdbuf()).str();
  EXPECT_NE(kept.find("Timesheets"), kept.npos) << kept;
  EXPECT_EQ(kept.find("register"), kept.npos) << "a line of a sign-in holds a key";
  EXPECT_EQ(std::filesystem::status(history).permissions(), std::filesystem::perms(0600));
}

TEST_F(Fmsim, StopsAtASignalAndStillUnloadsItsPlugins) {
  for (const std::string work : {"--eval \"SetRecursion ( While ( i = 0 ; 1 ; i = 0 ; i ) ; 1e9 )\"", "--idle 86400"}) {
    const std::string program = "echo $$; exec " FMSIM " --plugin " CARELESS_PLUGIN " --eval 1 " + work;
    const auto result = RunProcess({"/bin/sh", "-c",
                                    "{ sh -c '" + program +
                                        "'; echo $?; } 2>&1 | "
                                        "{ read process; read started; kill -TERM $process; cat; }"});
    EXPECT_TRUE(result.output.ends_with("Careless.fmx: left \"Careless.Leak\" registered\n143\n")) << result.output;
  }
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
