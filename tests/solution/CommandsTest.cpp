#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "solution/SampleDesign.h"
#include "support/Process.h"

namespace service {
namespace {

constexpr const char* kOrders = TEST_DATA "/Orders.xml";

/// An export in a file that exists as long as this. Its name contains the process id, because tests run in parallel.
class SavedExport {
 public:
  explicit SavedExport(const std::string& text) { std::ofstream(path_, std::ios::binary) << text; }
  ~SavedExport() { std::filesystem::remove(path_); }

  const std::string& path() const { return path_; }

 private:
  const std::string path_ = testing::TempDir() + "commands-test-" + std::to_string(getpid()) + ".xml";
};

ProcessResult RunService(std::vector<std::string> arguments) {
  arguments.insert(arguments.begin(), SERVICE);
  return RunProcess(arguments);
}

std::string Changes(const std::string& newer, const std::vector<std::string>& options = {}) {
  const SavedExport saved(newer);
  std::vector<std::string> arguments{"changes", kOrders, saved.path()};
  arguments.insert(arguments.end(), options.begin(), options.end());
  const ProcessResult result = RunService(arguments);
  EXPECT_EQ(result.status, 0);
  return result.output + result.errors;
}

std::string References(std::vector<std::string> options) {
  options.insert(options.begin(), {"references", kOrders});
  const ProcessResult result = RunService(options);
  EXPECT_EQ(result.status, 0);
  return result.output + result.errors;
}

std::string FirstLine(const std::string& text) { return text.substr(0, text.find('\n')); }

TEST(ChangesCommand, PrintsOneJsonObjectPerChange) {
  std::string text = solution::SampleWith("<Field id=\"1\" name=\"ID\"", "<Field id=\"1\" name=\"Key\"");
  text.replace(text.find("comment=\"the key\""), 17, "comment=\"&quot;\u00E4\"");
  EXPECT_EQ(Changes(text, {"--json"}),
            R"({"change":"renamed","kind":"field","uuid":"00000013-0000-4000-8000-000000000000","name":"Orders::Key",)"
            R"("oldName":"Orders::ID","properties":["name"]})"
            "\n"
            R"({"change":"edited","kind":"field","uuid":"00000013-0000-4000-8000-000000000000","name":"Orders::Key",)"
            R"("oldName":"Orders::ID","properties":["comment"]})"
            "\n");
}

TEST(ChangesCommand, ShowsScriptsLineByLine) {
  std::string text = solution::SampleWith("[\"Open\"]", "[\"Closed\"]");
  text.replace(text.find("<Script id=\"7\" name=\"Unused\""), 28, "<Script id=\"7\" name=\"Used\"");
  text.replace(text.find("about Orders"), 12, "bills");
  EXPECT_EQ(Changes(text),
            "tables\n"
            "  edited   Orders  Ann, 2025-07-02 16:45:56\n"
            "    comment: about Orders -> bills\n"
            "\n"
            "scripts\n"
            "  edited   Start  Ann, 2025-07-02 16:45:56\n"
            "    steps\n"
            "      ...\n"
            "            + Orders::${a + b} ]\n"
            "        If [ $total > 0 and orders CUSTOMER::${and} = 1 ]\n"
            "      -     Set Field [ Orders::Status ; \"Open\" ]\n"
            "      +     Set Field [ Orders::Status ; \"Closed\" ]\n"
            "            Perform Script [ \u201CReset\u201D ; Parameter: $total ]\n"
            "        Else\n"
            "  renamed  Unused -> Used\n"
            "\n"
            "1 renamed, 2 edited\n");
  EXPECT_EQ(Changes(solution::SampleText()), "no changes\n");
}

// A terminal would execute control characters from a foreign file.
TEST(ChangesCommand, PrintsNoControlCharacters) {
  const std::string text = Changes(solution::SampleWith("about Orders", "a&#27;[2Jb"));
  EXPECT_NE(text.find("-> a\\x1B[2Jb"), std::string::npos) << text;
}

TEST(ReferencesCommand, PrintsOneJsonObjectPerReference) {
  const std::string all = References({"--json"});
  EXPECT_EQ(
      FirstLine(all),
      R"({"fromKind":"file","fromUuid":"00000056-0000-4000-8000-000000000000","fromName":"Orders.fmp12",)"
      R"("toKind":"layout","toUuid":"0000003A-0000-4000-8000-000000000000","toName":"Order Form","place":"Defaults"})");
  EXPECT_EQ(all.find("Missing"), std::string::npos);
  EXPECT_EQ(
      FirstLine(References({"--broken", "--json"})),
      R"({"fromKind":"script","fromUuid":"00000029-0000-4000-8000-000000000000","fromName":"Start","toKind":"field",)"
      R"("toUuid":"","toName":"<Field Missing>","place":"step 11 Set Field"})");
  EXPECT_EQ(FirstLine(References({"--unused", "--json"})),
            R"({"kind":"field","uuid":"00000013-0000-4000-8000-000000000000","name":"Orders::ID"})");
}

TEST(ReferencesCommand, ShowsWhatOneElementUsesAndIsUsedBy) {
  EXPECT_EQ(References({"--of", "reset"}),
            "script Reset\n"
            "  used by\n"
            "    layout Order Form  Button \"go\", step 1 Perform Script\n"
            "    script Start  step 5 Perform Script\n"
            "  uses\n"
            "    script Log  step 1 Perform Script\n"
            "    script Start  step 2 Perform Script\n"
            "  performs\n"
            "    Log\n"
            "    Start\n"
            "      Reset (see above)\n");
}

TEST(ReferencesCommand, GroupsAllByElement) {
  const std::string all = References({});
  EXPECT_NE(all.find("\ncustomMenuSet"), 0u);
  EXPECT_NE(all.find("\ncustom menu set Office\n    custom menu Orders Menu  CustomMenuList\n"), std::string::npos);
  EXPECT_NE(all.find("2 broken references are not listed; see --broken\n"), std::string::npos);
  EXPECT_NE(References({"--unused"}).find("\nscripts\n  Unused\n\nvalue lists\n  People\n"), std::string::npos);
}

TEST(SearchCommand, ShowsEveryLineThatContainsTheText) {
  EXPECT_EQ(RunService({"search", "left: ", kOrders}).output,
            "script Start\n    steps:14 Show Custom Dialog [ Message: \"Left: \" & Stock::On Hand ]\n");
  EXPECT_EQ(RunService({"search", "left: ", kOrders, "--json"}).output,
            R"({"kind":"script","uuid":"00000029-0000-4000-8000-000000000000","name":"Start","property":"steps",)"
            R"("line":14,"text":"Show Custom Dialog [ Message: \"Left: \" & Stock::On Hand ]"})"
            "\n");
}

TEST(DesignCommands, RefuseWithOneLine) {
  const SavedExport damaged(solution::SampleWith("</ScriptCatalog>", "</Script>"));
  const struct {
    std::vector<std::string> arguments;
    int status;
    std::string error;
  } cases[] = {
      {{"search", "nowhere at all", kOrders}, 1, std::string(kOrders) + " does not contain nowhere at all"},
      {{"search", "a", "/nowhere"}, 1, "/nowhere cannot be opened: No such file or directory"},
      {{"references", kOrders, "--of", "nobody"}, 1, std::string(kOrders) + " has no element named nobody"},
      {{"references", kOrders, "--unused", "--broken"}, 2, "--unused excludes --broken"},
      {{"changes", kOrders, damaged.path()}, 1, damaged.path() + " is not well-formed XML in line "},
      {{"export", kOrders, kOrders}, 1, std::string(kOrders) + " is not a folder"},
      {{"changes", kOrders}, 2, "NEW is missing: name another export to compare with"},
  };
  for (const auto& [arguments, status, error] : cases) {
    const ProcessResult result = RunService(arguments);
    EXPECT_EQ(result.status, status) << error;
    EXPECT_EQ(result.output, "") << error;
    EXPECT_EQ(result.errors.substr(0, 16 + error.size()), "varnix-service: " + error);
    EXPECT_EQ(std::count(result.errors.begin(), result.errors.end(), '\n'), status) << result.errors;
  }
}

}  // namespace
}  // namespace service
