// The schema document: which expressions are evaluated, in which order, and the exact JSON.
#include "schema/SchemaBuilder.h"

#include "support/Rows.h"
#include "support/ScriptedHost.h"

namespace {

using Strings = std::vector<std::string>;

const std::string kQuery =
    "ExecuteSQL(\"SELECT TableName, FieldName, FieldType, FieldClass FROM FileMaker_Fields WHERE TableName NOT LIKE "
    "''Sys%'' ORDER BY TableName, FieldName\"; \"||\"; Char(13))";
const Strings kAlways = {"Get(FileName)", "Get(AccountName)", "Get(PrivilegeSetName)"};

struct SchemaBuilder : testing::Test {
  SchemaBuilder() {
    host.answers = {
        {"Get(FileName)", "Sales"}, {"Get(AccountName)", "CORP\\Admin"}, {"Get(PrivilegeSetName)", "[Full Access]"}};
  }
  /// The evaluations after the first three, with the argument `file`.
  static Strings Asked(Strings tables, const std::string& file, const Strings& customFunctions) {
    tables.insert(tables.begin(), kAlways.begin(), kAlways.end());
    for (const char* name : {"ScriptNames(", "LayoutNames(", "ValueListNames(", "PrivilegeSetNames("}) {
      tables.push_back(name + file + ")");
    }
    tables.insert(tables.end(), customFunctions.begin(), customFunctions.end());
    return tables;
  }
  std::string Tables(const std::string& queryResult) {
    host.answers[kQuery] = queryResult;
    const std::string json = CallHandler(Do_GetSchema);
    const auto start = json.find("\"tables\":");
    return start == json.npos ? json : json.substr(start + 9, json.find(",\"scripts\"") - start - 9);
  }
  ScriptedHost host;
};

TEST_F(SchemaBuilder, TakesTablesFromTheQueryAndNamesFromDesignFunctions) {
  host.answers[kQuery] = "Orders||Total \"net\"||decimal||Calculated\rÄpfel||n||date||Summary";
  host.answers["ScriptNames(Get(FileName))"] = "Start\r-\rVarnix Live Push";
  host.answers["LayoutNames(Get(FileName))"] = "Orders\r\rList\r";
  host.answers["ValueListNames(Get(FileName))"] = "Back\\slash";
  host.answers["PrivilegeSetNames(Get(FileName))"] = "[Full Access]";
  host.answers["CustomFunctionNames(\"Sales\")"] = "Add\nSub";
  EXPECT_EQ(CallHandler(Do_GetSchema),
            R"({"file":"Sales","account":"CORP\\Admin","tables":[)"
            R"({"name":"Orders","fields":[{"name":"Total \"net\"","type":"decimal","class":"Calculated"}]},)"
            R"({"name":"Äpfel","fields":[{"name":"n","type":"date","class":"Summary"}]}],)"
            R"("scripts":["Start","-","Varnix Live Push"],"layouts":["Orders","List"],"valueLists":["Back\\slash"],)"
            R"("privilegeSets":["[Full Access]"],"customFunctions":["Add","Sub"]})");
  EXPECT_EQ(host.asked, Asked({kQuery}, "Get(FileName)", {"CustomFunctionNames(\"Sales\")"}));
}

TEST_F(SchemaBuilder, ReadsRowsByTheirFirstThreeSeparators) {
  ExpectRows(DATA "/rows.txt", [this](const auto& rows) { return Tables(rows); });
}

TEST_F(SchemaBuilder, FallsBackToDesignFunctionsOfTheCurrentFileWhenTheQueryGivesNoRows) {
  for (const char* unusable : {"?", "", "no separators\rA||B"}) {
    host.asked.clear();
    host.answers["TableNames(Get(FileName))"] = "A\rB x\r\rA";
    host.answers["FieldNames(Get(FileName); \"A\")"] = "f";
    const std::string table =
        R"({"name":"A","fields":[{"name":"f","type":"","class":""},{"name":"f","type":"","class":""}]})";
    EXPECT_EQ(Tables(unusable), "[" + table + R"(,{"name":"B x","fields":[]},)" + table + "]");
    const std::string ofA = "FieldNames(Get(FileName); \"A\")", ofB = "FieldNames(Get(FileName); \"B x\")";
    EXPECT_EQ(host.asked, Asked({kQuery, "TableNames(Get(FileName))", ofA, ofB, ofA}, "Get(FileName)",
                                {"CustomFunctionNames(\"Sales\")", "CustomFunctionNames()"}));
  }
}

TEST_F(SchemaBuilder, AddressesAnotherFileByItsNameEvenIfOnlyTheCaseDiffers) {
  host.answers["TableNames(\"sales\")"] = "T";
  host.answers["CustomFunctionNames(\"sales\")"] = "?";
  host.answers["CustomFunctionNames()"] = "Own";
  EXPECT_EQ(CallHandler(Do_GetSchema, {"sales"}),
            R"({"file":"sales","account":"CORP\\Admin","tables":[{"name":"T","fields":[]}],"scripts":[],"layouts":[],)"
            R"("valueLists":[],"privilegeSets":[],"customFunctions":["Own"]})");
  EXPECT_EQ(host.asked, Asked({"TableNames(\"sales\")", "FieldNames(\"sales\"; \"T\")"}, "\"sales\"",
                              {"CustomFunctionNames(\"sales\")", "CustomFunctionNames()"}));
}

TEST_F(SchemaBuilder, DoesNotEvaluateANameThatWouldEndItsLiteralElsewhere) {
  const std::pair<const char*, bool> names[] = {{R"(T" ) & Beep & ( ")", false},
                                                {R"(T\")", false},
                                                {R"(T\)", false},
                                                {R"(T\\\)", false},
                                                {R"(T\\)", true},
                                                {R"(\T)", true}};
  for (const std::pair<std::string, bool> row : names) {
    const auto& [name, isEvaluated] = row;
    host.asked.clear();
    host.answers = {{"Get(FileName)", name}, {"TableNames(Get(FileName))", name}};
    EXPECT_NE(CallHandler(Do_GetSchema).find("\"fields\":[]}"), std::string::npos) << name;
    Strings tables = {kQuery, "TableNames(Get(FileName))"}, customFunctions = {"CustomFunctionNames()"};
    if (isEvaluated) {
      tables.push_back("FieldNames(Get(FileName); \"" + name + "\")");
      customFunctions.insert(customFunctions.begin(), "CustomFunctionNames(\"" + name + "\")");
    }
    EXPECT_EQ(host.asked, Asked(tables, "Get(FileName)", customFunctions)) << name;
  }
  host.asked.clear();
  EXPECT_EQ(CallHandler(Do_GetSchema, {"another\""}), "{}");
  EXPECT_EQ(host.asked, kAlways);
}

TEST_F(SchemaBuilder, IsAnEmptyObjectWithoutFurtherQuestionsWhenNoTableIsFound) {
  host.answers["TableNames(Get(FileName))"] = "T";
  EXPECT_EQ(CallHandler(Do_GetSchema, {"Sales"}), CallHandler(Do_GetSchema)) << "the current file, named exactly";
  EXPECT_EQ(CallHandler(Do_GetSchema, {"Nowhere"}), "{}");
  EXPECT_EQ(host.asked.back(), "TableNames(\"Nowhere\")");
  EXPECT_EQ(BuildSchema(nullptr, ""), "{}");
}

}  // namespace
