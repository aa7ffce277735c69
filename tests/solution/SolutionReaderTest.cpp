#include "sim/solution/SolutionReader.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "sim/calc/Unicode.h"
#include "tests/solution/ExportBuilder.h"

namespace sim {
namespace {

/// Carriage returns as \r.
std::string Show(std::u16string_view text) {
  std::string shown;
  for (const char byte : calc::ToUtf8(text)) shown += byte == '\r' ? std::string("\\r") : std::string(1, byte);
  return shown;
}

void Describe(std::ostream& out, const Field& field) {
  constexpr const char* kClasses[] = {"normal", "calculated", "summary"};
  constexpr const char* kTypes[] = {"text", "number", "date", "time", "timestamp", "container"};
  out << "  field " << field.id << " " << Show(field.name) << " " << kClasses[static_cast<int>(field.fieldClass)] << " "
      << kTypes[static_cast<int>(field.dataType)];
  if (field.global) out << " global";
  if (!field.stored) out << " unstored";
  if (field.indexed) out << " indexed";
  if (field.repetitions != 1) out << " " << field.repetitions << " repetitions";
  if (field.maximumLength) out << " max " << *field.maximumLength;
  if (!field.formula.empty()) out << " = " << Show(field.formula);
  if (!field.comment.empty()) out << ", comment " << Show(field.comment);
  out << "\n";
}

void Describe(std::ostream& out, const ScriptStep& step) {
  out << "  step " << step.id << " " << Show(step.name) << (step.enabled ? ":" : " (disabled):");
  if (!step.text.empty()) out << " " << Show(step.text);
  if (!step.repetition.empty()) out << " [" << Show(step.repetition) << "]";
  if (!step.title.empty()) out << " title " << Show(step.title);
  if (!step.calculation.empty()) out << " = " << Show(step.calculation);
  for (const auto& destination : step.destinations) out << " to " << Show(destination);
  out << "\n";
}

template <typename Item>
std::string Listed(const char* what, const Item& item) {
  constexpr const char* kKinds[] = {"item", "folder", "end", "separator"};
  return std::string(what) + " " + kKinds[static_cast<int>(item.kind)] + " " + std::to_string(item.id) + " " +
         Show(item.name);
}

std::string Describe(const Solution& file) {
  std::ostringstream out;
  out << "file " << Show(file.fileName) << ", " << Show(file.name) << ", saved by " << Show(file.savedBy) << ", login "
      << Show(file.autoLoginAccount) << ", layout " << file.startLayoutId.value_or(0) << "\n";
  for (const auto& table : file.baseTables) {
    out << "table " << table.id << " " << Show(table.name) << ", " << table.modifications << " modifications\n";
    for (const auto& field : table.fields) Describe(out, field);
  }
  for (const auto& occurrence : file.occurrences) {
    out << "occurrence " << occurrence.id << " " << Show(occurrence.name) << " of "
        << (occurrence.baseTableId ? std::to_string(*occurrence.baseTableId) : "none") << "\n";
  }
  for (const auto& layout : file.layouts) {
    out << Listed("layout", layout);
    if (layout.occurrenceId) out << " of " << *layout.occurrenceId;
    out << "\n";
  }
  for (const auto& script : file.scripts) {
    out << Listed("script", script) << (script.runWithFullAccess ? " with full access\n" : "\n");
    for (const auto& step : script.steps) Describe(out, step);
  }
  for (const auto& list : file.valueLists) {
    out << "value list " << list.id << " " << Show(list.name) << (list.customValues.empty() ? ":" : ": ")
        << Show(list.customValues) << "\n";
  }
  for (const auto& function : file.customFunctions) {
    out << "function " << Show(function.name) << " ( ";
    for (const auto& parameter : function.parameters) out << Show(parameter) << " ";
    out << ") = " << Show(function.formula) << "\n";
  }
  for (const auto& set : file.privilegeSets) {
    out << "privilege set " << set.id << " " << Show(set.name);
    for (const auto& privilege : set.extendedPrivileges) out << " " << Show(privilege);
    out << "\n";
  }
  for (const auto& account : file.accounts) {
    out << "account " << account.id << " " << Show(account.name) << (account.enabled ? "" : " (disabled)") << " set "
        << account.privilegeSetId << "\n";
  }
  return out.str();
}

/// The design of an export, or the error.
std::string Open(std::string bytes) {
  Solution solution;
  std::string error;
  return ReadSolutionBytes(std::move(bytes), "a.xml", solution, error) ? Describe(solution) : error;
}

std::string Utf16(std::string_view utf8, bool big) {
  std::string bytes;
  for (const char16_t unit : calc::ToUtf16(utf8)) {
    const char high = static_cast<char>(unit >> 8);
    const char low = static_cast<char>(unit & 0xFF);
    bytes += big ? high : low;
    bytes += big ? low : high;
  }
  return bytes;
}

const std::string kMark = "\xEF\xBB\xBF";

/// A root with the given attributes around an empty design.
std::string Root(const std::string& attributes) {
  return "<FMSaveAsXML " + attributes + "><Structure><AddAction></AddAction></Structure></FMSaveAsXML>";
}

TEST(SolutionReader, ReadsTheSameDesignFromEveryFormatVersion) {
  for (const FormatVersion& version : kFormatVersions) {
    EXPECT_EQ(Open(BuildExport(version)), kExportedDesign) << version.number;
  }
}

TEST(SolutionReader, ReadsTheSameDesignFromEveryEncodingWhateverTheDeclarationSays) {
  std::string text = BuildExport(kFormatVersions[5]);
  for (const std::string declared : {"", " encoding=\"ISO-8859-1\"", " encoding=\"UTF-16\""}) {
    const std::string content = "<?xml version=\"1.0\"" + declared + "?>" + text.substr(text.find('\n'));
    const std::string marked = kMark + content;
    for (const std::string& bytes :
         {content, marked, Utf16(content, false), Utf16(content, true), Utf16(marked, false), Utf16(marked, true)}) {
      EXPECT_EQ(Open(bytes), kExportedDesign) << declared;
    }
  }
}

TEST(SolutionReader, TakesLineFeedsInAValueListForTheCarriageReturnsTheyWere) {
  for (const std::string converted : {"\n", "\r\n"}) {
    std::string text = BuildExport(kFormatVersions[1]);
    text.replace(text.find("Yes\rNo"), 6, "Yes" + converted + "No");
    EXPECT_EQ(Open(text), kExportedDesign);
  }
}

TEST(SolutionReader, TakesMissingCatalogsForEmptyOnes) {
  EXPECT_EQ(Open(Root("version=\"2.2.3.0\" File=\"Mini\"")), "file Mini, Mini, saved by , login , layout 0\n");
}

TEST(SolutionReader, RefusesWhatIsNoUsableExportWithTheReason) {
  const struct {
    std::string bytes;
    const char* error;
  } cases[] = {
      {"", "a.xml is empty"},
      {kMark, "a.xml is empty"},
      {"\xFF\xFE", "a.xml is empty"},
      {"\xFF\xFE<", "a.xml is cut off within a UTF-16 character"},
      {"just text", "a.xml is not XML"},
      {"\xFF", "a.xml is not XML"},
      {std::string(7, '\0'), "a.xml is not XML"},
      {"<fmxmlsnippet/>", "a.xml is not a \"Save a Copy as XML\" export: its root element is fmxmlsnippet"},
      {Root(""), "a.xml has the format version \"\", which is not supported"},
      {Root("version=\"3&#10;\""), "a.xml has the format version \"3 \", which is not supported"},
      {Root("version=\"3.0.0.0\""), "a.xml has the format version \"3.0.0.0\", which is not supported"},
      {Root("version=\"2.3.0.0\" split_catalogs=\"True\""),
       "a.xml is split into one file per catalog, which is not supported: save it as one file"},
      {"<FMSaveAsXML version=\"2.2.3.0\"/>", "a.xml holds no design: the element Structure/AddAction is missing"},
      {Root("version=\"2.2.3.0\""), "a.xml does not name its FileMaker file: the attribute File is missing"},
  };
  for (const auto& test : cases) EXPECT_EQ(Open(test.bytes), test.error) << test.bytes;
}

TEST(SolutionReader, NamesTheLineOfMalformedXml) {
  const struct {
    std::string bytes;
    const char* error;
  } cases[] = {
      {"<a>\n<b>\n</a>", "a.xml is malformed in line 3: Start-end tags mismatch"},
      {"<a>\n\n<1>", "a.xml is malformed in line 3: Could not determine tag type"},
      {"<a>\r<b>\r</a>", "a.xml is malformed in line 3: Start-end tags mismatch"},
      {"<a>\r\r\n<![CDATA[\r\r x", "a.xml is malformed in line 2: Error parsing CDATA section"},
      // What the first versions wrote for a comment that holds a CDATA section.
      {"<Step>\n<Comment value=\"<![CDATA[\"Value\"]]>\"></Comment></Step>",
       "a.xml is malformed in line 2: Error parsing element attribute"},
  };
  for (const auto& test : cases) {
    EXPECT_EQ(Open(test.bytes), test.error);
    EXPECT_EQ(Open(kMark + test.bytes), test.error);
    EXPECT_EQ(Open(Utf16(test.bytes, false)), test.error);
  }
}

TEST(SolutionReader, CutOffAnywhereAnExportIsRefusedAndTheSolutionKept) {
  const std::string whole = BuildExport(kFormatVersions[5]);
  for (std::size_t length = 0; length + 2 < whole.size(); length += 7) {
    Solution solution;
    solution.name = u"before";
    std::string error;
    ASSERT_FALSE(ReadSolutionBytes(whole.substr(0, length), "a.xml", solution, error)) << length;
    EXPECT_TRUE(error.starts_with("a.xml is ")) << error;
    EXPECT_EQ(solution.name, u"before");
  }
}

class SolutionFile : public testing::Test {
 protected:
  void SetUp() override {
    std::string pattern = testing::TempDir() + "solution-XXXXXX";
    ASSERT_NE(mkdtemp(pattern.data()), nullptr);
    directory_ = pattern;
  }
  void TearDown() override { std::filesystem::remove_all(directory_); }

  std::string directory_;
};

TEST_F(SolutionFile, IsReadWhole) {
  const std::string path = directory_ + "/Größe.xml";
  // Longer than one read, and not a multiple of it.
  const std::string padding(3'000'001, ' ');
  std::ofstream(path, std::ios::binary) << BuildExport(kFormatVersions[6]) << padding;
  Solution solution;
  std::string error;
  ASSERT_TRUE(ReadSolution(path, solution, error)) << error;
  EXPECT_EQ(Describe(solution), kExportedDesign);
  EXPECT_EQ(solution.path, path);
  EXPECT_EQ(solution.formatVersion, u"2.2.3.4");
}

TEST_F(SolutionFile, ThatCannotBeOpenedIsNamedWithTheReason) {
  const std::string empty = directory_ + "/empty.xml";
  std::ofstream(empty).flush();
  const std::string missing = directory_ + "/missing.xml";
  const struct {
    std::string path;
    const char* reason;
  } cases[] = {{missing, " cannot be opened: No such file or directory"},
               {empty + "/x.xml", " cannot be opened: Not a directory"},
               {directory_, " is not a regular file"},
               {empty, " is empty"}};
  for (const auto& test : cases) {
    Solution solution;
    std::string error;
    EXPECT_FALSE(ReadSolution(test.path, solution, error));
    EXPECT_EQ(error, test.path + test.reason);
  }
}

}  // namespace
}  // namespace sim
