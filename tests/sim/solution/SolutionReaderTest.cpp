// Exports of the versions that differ most, and everything that is not one.
#include "solution/SolutionReader.h"

#include <gtest/gtest.h>

#include <string>

#include "calc/Unicode.h"
#include "sim/solution/SampleSolution.h"

namespace sim {
namespace {

// What the versions write in different ways. The rest is seen in what the functions and queries list of the sample.
std::u16string Describe(const Solution& file) {
  std::u16string text = file.fileName + u"|" + file.name + u"|" + file.autoLoginAccount;
  for (const auto& table : file.baseTables) {
    for (const auto& field : table.fields) text += u"|" + field.name + field.formula + field.comment;
  }
  for (const auto& it : file.occurrences) text += u"|" + it.name + (file.TableOf(it) ? file.TableOf(it)->name : u"-");
  for (const auto& it : file.valueLists) text += u"|" + it.name + it.customValues;
  for (const auto& it : file.customFunctions) {
    text += u"|" + it.name;
    for (const auto& parameter : it.parameters) text += parameter;
    text += it.formula;
  }
  for (const auto& it : file.accounts) text += u"|" + it.name;
  return text;
}

const std::string kSample =
    "Sales.FMP12|Sales|Admin|Numbergrößer <\r😀|Title|TotalQuantity\r* a]]>b|Now|Latest|Due|Scan|Name|"
    "SysLogContacts|OrdersOrders|Remote-|contactsContacts|YNYes\rNo|Names|Zipaba + b|Add|Admin";

/// The design of an export, or the error.
std::string Open(std::string bytes) {
  Solution solution;
  std::string error;
  if (!ReadSolutionBytes(std::move(bytes), "a.xml", solution, error)) return error;
  return calc::ToUtf8(Describe(solution));
}

/// A root with the given attributes around a design, in the second line.
std::string Root(const std::string& attributes, const std::string& design = "") {
  return "<FMSaveAsXML " + attributes + "><Structure><AddAction>\n" + design + "</AddAction></Structure></FMSaveAsXML>";
}

std::string Mini(const std::string& design) { return Root("version=\"2.2.3.0\" File=\"Mini\"", design); }

TEST(SolutionReader, ReadsTheSameDesignFromEveryFormatVersion) {
  for (const std::string_view version : kFormatVersions) EXPECT_EQ(Open(SampleExport(version)), kSample) << version;
}

TEST(SolutionReader, RefusesWhatIsNoUsableExportWithTheReasonInOneLine) {
  const struct {
    std::string bytes;
    const char* error;
  } cases[] = {
      {"", "a.xml is empty"},
      {"<a>\n\xFF\n</a>", "a.xml is not valid UTF-8 in line 2"},
      {"<a>\n</a>\n" + std::string(7, '\0'), "a.xml holds a zero byte in line 3"},
      {"<fmxmlsnippet/>", "a.xml is not a \"Save a Copy as XML\" export: its root element is fmxmlsnippet"},
      {Root("version=\"3&#10;\""), "a.xml has the format version \"3 \", which is not supported"},
      {Root("version=\"2.3.0.0\" split_catalogs=\"True\""),
       "a.xml is split into one file per catalog, which is not supported: save it as one file"},
      {"<a>\r<b>\r</a>", "a.xml is malformed in line 3: Start-end tags mismatch"},
      {"<a/>\n<!-- x -->\nx", "a.xml is malformed in line 3: content outside the root element"},
      {Mini("<LayoutCatalog>\n<Layout id=\"1x\"/></LayoutCatalog>"),
       "a.xml is malformed in line 3: a Layout without a usable id"},
      {Mini("<FieldsForTables><FieldCatalog><BaseTableReference id=\"9\"/></FieldCatalog></FieldsForTables>"),
       "a.xml is malformed in line 2: a FieldCatalog of an unknown table"},
  };
  for (const auto& test : cases) EXPECT_EQ(Open(test.bytes), test.error) << test.bytes;
}

}  // namespace
}  // namespace sim
