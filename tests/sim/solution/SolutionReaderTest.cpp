// Exports of the versions that differ most, damaged ones, and those that need repair.
#include "solution/SolutionReader.h"

#include <gtest/gtest.h>

#include <string>

#include "calc/Unicode.h"
#include "sim/solution/SampleSolution.h"
#include "support/Rows.h"

namespace sim {
namespace {

// What the versions write in different ways. Tests of functions and queries on the sample cover the rest.
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
std::string Open(const std::string& bytes) {
  Solution solution;
  std::string error;
  if (!ReadSolutionBytes(std::string(bytes), "a.xml", solution, error)) return error;
  return calc::ToUtf8(Describe(solution));
}

TEST(SolutionReader, ReadsTheSameDesignFromEveryFormatVersion) {
  for (const std::string_view version : kFormatVersions) EXPECT_EQ(Open(SampleExport(version)), kSample) << version;
}

TEST(SolutionReader, RefusesDamagedDesignsWithTheLine) { ExpectRows(SALES_EXPORTS "/damaged.txt", Open); }

// FileMaker up to 19.4 writes such comments without escaping their CDATA sections.
TEST(SolutionReader, ReadsPastCommentsThatBreakTheXmlAndWarns) {
  Solution solution;
  std::string error;
  const std::string broken = "&lt;<![CDATA[\"a\" < b]]>";
  const std::string script =
      "<FMSaveAsXML version=\"2.2.3.0\" File=\"Mini\"><Structure><AddAction>"
      "<ScriptCatalog><Script id=\"1\" name=\"Go\"/></ScriptCatalog><StepsForScripts><Script>"
      "<ScriptReference id=\"1\"/><ObjectList><Step id=\"89\"><ParameterValues><Parameter "
      "type=\"Comment\"><Comment value=\"" +
      broken +
      "\"/></Parameter></ParameterValues></Step>"
      "<Step id=\"103\"/></ObjectList></Script></StepsForScripts></AddAction></Structure></FMSaveAsXML>";
  ASSERT_TRUE(ReadSolutionBytes(script, "a.xml", solution, error)) << error;
  EXPECT_EQ(solution.scripts.at(0).steps.size(), 2u);
  EXPECT_EQ(solution.notes, std::vector<std::string>{
                                "a.xml has 1 CDATA section(s) inside attribute values, as FileMaker up to 19.4 writes "
                                "some comments; they were read as text"});
}

}  // namespace
}  // namespace sim
