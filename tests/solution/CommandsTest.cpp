#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "designs/DesignCommands.h"
#include "solution/SampleDesign.h"

namespace service {
namespace {

constexpr const char* kOrders = TEST_DATA "/Orders.xml";
const Colours kPlain(false);

/// An export in a file that lives as long as this does. Its name is its process's own: tests run side by side.
class SavedExport {
 public:
  explicit SavedExport(const std::string& text) { std::ofstream(path_, std::ios::binary) << text; }
  ~SavedExport() { std::filesystem::remove(path_); }

  const std::string& path() const { return path_; }

 private:
  const std::string path_ = testing::TempDir() + "commands-test-" + std::to_string(getpid()) + ".xml";
};

struct Printed {
  std::ostringstream out, warnings;
};

std::string Changes(const std::string& newer, bool json, const Colours& colours = kPlain) {
  Printed printed;
  const SavedExport saved(newer);
  PrintChanges({kOrders, saved.path(), json}, colours, printed.out, printed.warnings);
  return printed.out.str() + printed.warnings.str();
}

std::string References(ReferencesOptions options) {
  Printed printed;
  options.file = kOrders;
  PrintReferences(options, kPlain, printed.out, printed.warnings);
  return printed.out.str() + printed.warnings.str();
}

std::string FirstLine(const std::string& text) { return text.substr(0, text.find('\n')); }

TEST(ChangesCommand, PrintsOneJsonObjectPerChange) {
  std::string text = solution::SampleWith("<Field id=\"1\" name=\"ID\"", "<Field id=\"1\" name=\"Key\"");
  text.replace(text.find("comment=\"the key\""), 17, "comment=\"&quot;\u00E4\"");
  EXPECT_EQ(Changes(text, true),
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
  EXPECT_EQ(Changes(text, false),
            "tables\n"
            "  edited   Orders\n"
            "    comment: about Orders -> bills\n"
            "\n"
            "scripts\n"
            "  edited   Start\n"
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
  EXPECT_EQ(Changes(solution::SampleText(), false), "no changes\n");
  EXPECT_NE(Changes(text, false, Colours(true)).find("\x1B[31m-     Set Field"), std::string::npos);
}

// A terminal obeys what a foreign file may contain.
TEST(ChangesCommand, PrintsNoControlCharacters) {
  const std::string text = Changes(solution::SampleWith("about Orders", "a&#27;[2Jb"), false);
  EXPECT_NE(text.find("-> a [2Jb"), std::string::npos) << text;
}

TEST(ReferencesCommand, PrintsOneJsonObjectPerReference) {
  const std::string all = References({.json = true});
  EXPECT_EQ(
      FirstLine(all),
      R"({"fromKind":"file","fromUuid":"00000056-0000-4000-8000-000000000000","fromName":"Orders.fmp12",)"
      R"("toKind":"layout","toUuid":"0000003A-0000-4000-8000-000000000000","toName":"Order Form","place":"Defaults"})");
  EXPECT_EQ(all.find("Missing"), std::string::npos);
  EXPECT_EQ(
      FirstLine(References({.broken = true, .json = true})),
      R"({"fromKind":"script","fromUuid":"00000029-0000-4000-8000-000000000000","fromName":"Start","toKind":"field",)"
      R"("toUuid":"","toName":"<Field Missing>","place":"step 11 Set Field"})");
  EXPECT_EQ(FirstLine(References({.unused = true, .json = true})),
            R"({"kind":"field","uuid":"00000013-0000-4000-8000-000000000000","name":"Orders::ID"})");
}

TEST(ReferencesCommand, ShowsWhatOneElementUsesAndIsUsedBy) {
  EXPECT_EQ(References({.of = "reset"}),
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
  EXPECT_THROW(References({.of = "nobody"}), std::runtime_error);
}

TEST(ReferencesCommand, GroupsAllByElement) {
  const std::string all = References({});
  EXPECT_NE(all.find("\ncustomMenuSet"), 0u);
  EXPECT_NE(all.find("\ncustom menu set Office\n    custom menu Orders Menu  CustomMenuList\n"), std::string::npos);
  EXPECT_NE(all.find("2 broken references are not listed; see --broken\n"), std::string::npos);
  EXPECT_NE(References({.unused = true}).find("\nscripts\n  Unused\n\nvalue lists\n  People\n"), std::string::npos);
}

TEST(FileCommands, SearchAndRefuse) {
  Printed printed;
  EXPECT_TRUE(PrintSearch("left: ", kOrders, kPlain, printed.out, printed.warnings));
  EXPECT_EQ(printed.out.str(),
            "script Start\n    steps:14 Show Custom Dialog [ Message: \"Left: \" & Stock::On Hand ]\n");
  EXPECT_FALSE(PrintSearch("nowhere at all", kOrders, kPlain, printed.out, printed.warnings));
  EXPECT_THROW(PrintSearch("a", "/nowhere", kPlain, printed.out, printed.warnings), std::runtime_error);
  EXPECT_THROW(ExportDesign(kOrders, kOrders, printed.out, printed.warnings), std::runtime_error);
}

}  // namespace
}  // namespace service
