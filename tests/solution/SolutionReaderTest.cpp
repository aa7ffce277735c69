// Exports of every version and encoding, and everything that is not one.
#include "sim/solution/SolutionReader.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <fstream>
#include <optional>
#include <string>
#include <vector>

#include "sim/calc/Unicode.h"
#include "tests/solution/ExportBuilder.h"
#include "tests/support/FolderTest.h"

namespace sim {
namespace {

std::string Show(std::u16string_view text) {
  std::string shown;
  for (const char byte : calc::ToUtf8(text)) shown += byte == '\r' ? std::string("\\r") : std::string(1, byte);
  return shown;
}

std::string Show(int number) { return std::to_string(number); }

template <typename Number>
std::string Show(const std::optional<Number>& number) {
  return number ? std::to_string(*number) : "-";
}

std::string Show(const std::vector<std::u16string>& texts) {
  std::string shown;
  for (const auto& text : texts) shown += (shown.empty() ? "" : ", ") + Show(text);
  return shown;
}

/// One line: what it is about and all it holds.
template <typename... Members>
std::string Line(std::string line, const Members&... members) {
  ((line += "|" + Show(members)), ...);
  return line + "\n";
}

std::string Describe(const Solution& file) {
  std::string text = Line("file", file.fileName, file.name, file.savedBy, file.autoLoginAccount, file.startLayoutId);
  for (const auto& table : file.baseTables) {
    text += Line("table", table.id, table.name, table.modifications);
    for (const auto& field : table.fields) {
      text += Line("field", field.id, field.name, static_cast<int>(field.fieldClass), static_cast<int>(field.dataType),
                   field.global, field.stored, field.indexed, field.repetitions, field.maximumLength, field.formula,
                   field.comment);
    }
  }
  for (const auto& it : file.occurrences) text += Line("occurrence", it.id, it.name, it.baseTableId);
  for (const auto& it : file.layouts)
    text += Line("layout", it.id, it.name, static_cast<int>(it.kind), it.occurrenceId);
  for (const auto& script : file.scripts) {
    text += Line("script", script.id, script.name, static_cast<int>(script.kind), script.runWithFullAccess);
    for (const auto& step : script.steps) {
      text += Line("step", step.id, step.name, step.enabled, step.text, step.calculation, step.repetition, step.title,
                   step.destinations);
    }
  }
  for (const auto& it : file.valueLists) text += Line("value list", it.id, it.name, it.customValues);
  for (const auto& it : file.customFunctions) text += Line("function", it.name, it.parameters, it.formula);
  for (const auto& it : file.privilegeSets) text += Line("privilege set", it.id, it.name, it.extendedPrivileges);
  for (const auto& note : file.notes) text += note + "\n";
  for (const auto& it : file.accounts) text += Line("account", it.id, it.name, it.enabled, it.privilegeSetId);
  return text;
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

/// A root with the given attributes around a design, in the second line.
std::string Root(const std::string& attributes, const std::string& design = "") {
  return "<FMSaveAsXML " + attributes + "><Structure><AddAction>\n" + design + "</AddAction></Structure></FMSaveAsXML>";
}

std::string Mini(const std::string& design) { return Root("version=\"2.2.3.0\" File=\"Mini\"", design); }

TEST(SolutionReader, ReadsTheSameDesignFromEveryFormatVersion) {
  for (const std::string_view version : kFormatVersions) {
    EXPECT_EQ(Open(BuildExport(version)), kExportedDesign) << version;
  }
}

TEST(SolutionReader, ReadsTheSameDesignFromEveryEncodingWhateverTheDeclarationSays) {
  const std::string text = BuildExport("2.2.3.0");
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
    std::string text = BuildExport("2.1.0.0");
    text.replace(text.find("Yes\rNo"), 6, "Yes" + converted + "No");
    EXPECT_EQ(Open(text), kExportedDesign);
  }
}

TEST(SolutionReader, TakesMissingCatalogsForEmptyOnes) { EXPECT_EQ(Open(Mini("")), "file|Mini|Mini|||-\n"); }

TEST(SolutionReader, NotesWhatOpensButDoesNotWork) {
  const std::string design = Open(Mini(""));
  EXPECT_EQ(Open(Root("version=\"2.2.3.0\" File=\"Mini\" locale=\"English\"")), design);
  EXPECT_EQ(
      Open(Root("version=\"2.2.3.0\" File=\"Mini\" locale=\"German\"")),
      design +
          "a.xml was saved by a FileMaker in German: names and scripts can be used, but functions in its formulas "
          "are spelled in that language and fail; save it with an English FileMaker to calculate them\n");
  std::string half = Utf16(Mini("<!--\n?-->"), false);
  half.replace(half.find('?'), 2, "\x3D\xD8");
  EXPECT_EQ(Open(half), design + "a.xml holds half a character in line 3, which reads as U+FFFD here\n");
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
      {"<a>\n\xFF\n</a>", "a.xml is not valid UTF-8 in line 2"},
      {"<a>\n</a>\n" + std::string(7, '\0'), "a.xml holds a zero byte in line 3"},
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
      {"<a>\n</a>\n \n<b/>", "a.xml is malformed in line 4: content outside the root element"},
      {"<a/>\n<!-- x -->\nx", "a.xml is malformed in line 3: content outside the root element"},
      {Mini("<LayoutCatalog>\n<Layout id=\"1x\"/></LayoutCatalog>"),
       "a.xml is malformed in line 3: a Layout without a usable id"},
      {Mini("<ScriptCatalog><Script/></ScriptCatalog>"), "a.xml is malformed in line 2: a Script without a usable id"},
      {Mini("<ValueListCatalog><ValueList id=\"1\"/>\n<ValueList id=\"1\"/></ValueListCatalog>"),
       "a.xml is malformed in line 3: a second ValueList of one id"},
      {Mini("<StepsForScripts><Script/></StepsForScripts>"),
       "a.xml is malformed in line 2: a Script without a ScriptReference"},
      {Mini("<FieldsForTables><FieldCatalog><BaseTableReference id=\"9\"/></FieldCatalog></FieldsForTables>"),
       "a.xml is malformed in line 2: a FieldCatalog of an unknown table"},
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
  const std::string whole = BuildExport("2.2.3.0");
  for (std::size_t length = 0; length + 2 < whole.size(); length += 7) {
    Solution solution;
    solution.name = u"before";
    std::string error;
    ASSERT_FALSE(ReadSolutionBytes(whole.substr(0, length), "a.xml", solution, error)) << length;
    EXPECT_TRUE(error.starts_with("a.xml is ")) << error;
    EXPECT_EQ(solution.name, u"before");
  }
}

using SolutionFile = FolderTest;

TEST_F(SolutionFile, IsReadWhole) {
  const std::string path = folder_ + "/Größe.xml";
  std::string text = BuildExport("2.2.3.4");
  text.insert(text.find("</Structure>"), 3'000'001, ' ');  // takes several reads, the last one short
  std::ofstream(path, std::ios::binary) << text;
  Solution solution;
  std::string error;
  ASSERT_TRUE(ReadSolution(path, solution, error)) << error;
  EXPECT_EQ(Describe(solution), kExportedDesign);
  EXPECT_EQ(solution.path, path);
  EXPECT_EQ(solution.formatVersion, u"2.2.3.4");
}

TEST_F(SolutionFile, ThatCannotBeOpenedIsNamedWithTheReason) {
  const std::string empty = folder_ + "/empty.xml";
  std::ofstream(empty).flush();
  const std::string missing = folder_ + "/missing.xml";
  const struct {
    std::string path;
    const char* reason;
  } cases[] = {{missing, " cannot be opened: No such file or directory"},
               {empty + "/x.xml", " cannot be opened: Not a directory"},
               {folder_, " is not a regular file"},
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
