// Scripts, as far as they are simulated.
#include "application/ScriptRunner.h"

#include <gtest/gtest.h>

#include "calc/Unicode.h"
#include "sim/application/SmallExport.h"

namespace {

class ScriptRunner : public SmallExports {
 protected:
  // Opens a file, runs its script, and returns the script's result.
  std::string Run(const SmallFile& file, const std::string& parameter = "") {
    sim::Application application;
    std::string error;
    EXPECT_TRUE(application.files().Open(Write(file), error)) << error;
    auto& opened = *application.files().all().front();
    shown.clear();
    const sim::ScriptSurroundings surroundings{[this](const std::string& line) { shown += line + '\n'; },
                                               [](int, std::chrono::milliseconds) {}};
    calc::Value result;
    const bool succeeded = sim::RunScript(application, surroundings, opened, opened.solution.scripts.front(),
                                          calc::Value::OfText(calc::ToUtf16(parameter)), result);
    EXPECT_EQ(succeeded, shown.find("failed") == shown.npos) << shown;
    return calc::ToUtf8(result.AsText());
  }

  std::string shown;
};

TEST_F(ScriptRunner, RunsTheScriptsOfTheDataFile) {
  constexpr std::string_view kIndent = "    ", kGives = " => ";
  std::istringstream lines(Contents(DATA "/scripts.txt") + '\n');
  std::string script, expected, shownAfter;
  int run = 0;
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with("#")) continue;
    if (line.empty()) {
      EXPECT_EQ(shown, std::exchange(shownAfter, {})) << script;
      script.clear();
      shown.clear();
    } else if (!line.starts_with(kIndent)) {
      script += line + '\n';
    } else if (const auto gives = line.find(kGives); gives != line.npos) {
      const auto parameter = line.substr(kIndent.size(), gives - kIndent.size());
      EXPECT_EQ(Run({.steps = script}, parameter), line.substr(gives + kGives.size())) << script << line;
      ++run;
    } else {
      shownAfter += line.substr(kIndent.size()) + '\n';
    }
  }
  EXPECT_EQ(run, 9);
}

TEST_F(ScriptRunner, SavesTheExportItselfAsXml) {
  const std::string copy = folder_ + "/copy.xml", small = folder_ + "/Small.xml";
  const auto save = [&](const std::string& options, SmallFile file = {}) {
    file.steps = "Set Variable $path | \"/Macintosh HD" + copy + "\"\nSave a Copy as XML " + options +
                 "\nExit Script Get ( LastError )";
    return Run(file);
  };
  for (const char* window : {"", "Get ( WindowName )"}) {
    EXPECT_EQ(save(std::string(window) + " | $path"), "0");
    EXPECT_EQ(Contents(copy), Contents(small));
    std::filesystem::remove(copy);
  }
  std::ofstream(copy) << "older";
  EXPECT_EQ(save(" | $path"), "800");
  EXPECT_EQ(shown, "script \"Go\", step 2 \"Save a Copy as XML\" failed with error 800: " + copy + ": File exists\n");
  EXPECT_EQ(save(" | $path</Location><Location>file:second.xml"), "0") << "the next path of the list";
  EXPECT_EQ(Contents(copy), "older");
  EXPECT_EQ(Contents(folder_ + "/second.xml"), Contents(small));
  std::filesystem::remove(copy);
  EXPECT_EQ(save("\"Other\" | $path"), "100");
  EXPECT_EQ(save(" | filemac:/Macintosh HD/no/such/folder/x.xml"), "800");
  EXPECT_EQ(save(" | $path", {.privilegeSet = "4"}), "9");
  EXPECT_EQ(save(" | $path", {.fullAccess = "True", .privilegeSet = "4"}), "0");
}

}  // namespace
